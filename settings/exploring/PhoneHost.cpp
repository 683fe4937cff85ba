// SPDX-License-Identifier: MIT
#include "settings/exploring/PhoneHost.h"

#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <string_view>
#include <utility>

#include "platform/foundation/DarwinNotificationCenter.h"
#include "platform/foundation/NotificationCenter.h"
#include "platform/foundation/RunLoop.h"
#include "settings/application/StoredFiles.h"
#include "settings/application/TopScreen.h"
#include "settings/channels/JSON.h"
#include "settings/channels/LineReader.h"
#include "settings/exploring/AllocatedMemory.h"
#include "settings/recording/RecordingReader.h"

namespace settings {

using platform::Array;
using platform::Dictionary;

namespace {

bool sendLine(int socket, std::string line) {
    line += '\n';
    for (std::string_view rest = line; !rest.empty();) {
        const ssize_t sent = send(socket, rest.data(), rest.size(), MSG_NOSIGNAL);
        if (sent < 0 && errno != EINTR) return false;
        if (sent > 0) rest.remove_prefix(static_cast<std::size_t>(sent));
    }
    return true;
}

std::string refusal(const std::string& reason) {
    return jsonText(Dictionary{{"error", reason}});
}

}  // namespace

PhoneHost::PhoneHost(Application& application, RecordedWorld& world, std::string rootDirectory)
    : application_(application), world_(world), replayer_(application, world, std::move(rootDirectory)) {}

void PhoneHost::refuse(int socket, const std::string& reason) {
    sendLine(socket, refusal(reason));
}

bool PhoneHost::serve(int socket) {
    LineReader lines(RecordingReader::longestLine);
    std::array<char, std::size_t{1} << 16> bytes{};
    for (;;) {
        const ssize_t count = recv(socket, bytes.data(), bytes.size(), 0);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return true;
        for (const auto& line : lines.feed({bytes.data(), static_cast<std::size_t>(count)})) {
            if (!sendLine(socket, report(line.text))) return false;
        }
    }
}

std::string PhoneHost::report(const std::string& line) {
    auto step = parseRecordedStep(line);
    if (!step) return refusal(step.error().localizedDescription);
    // Whatever waits is answered at its end, to which the recorded time goes by itself.
    if (std::holds_alternative<RecordedStep::Command>(step->what)) step->answer = "{}";
    const auto answer = replayer_.play(*step);
    if (!answer) return refusal(answer.error().localizedDescription);
    std::string found = jsonText(findings(*step));
    if (!*answer) return found;
    // The answer has told all that had happened when the last one was over: what stays would look like memory
    // that is lost.
    application_.events().forgetBefore(toldUpTo_);
    toldUpTo_ = application_.events().end();
    return found.substr(0, found.size() - 1) + ",\"answer\":" + **answer + "}";
}

Dictionary PhoneHost::findings(const RecordedStep& step) {
    application_.keepUp();
    Dictionary found{{"time", world_.time().milliseconds()}};
    const auto files = application_.phone()->files();
    const auto paths = storedFilePaths(*application_.bundle());
    std::int64_t stored = 0;
    for (const auto& [name, path] : paths) {
        const auto data = files->read(path);
        stored += data ? static_cast<std::int64_t>(data->size()) : 0;
    }
    found["stored"] = stored;
    if (std::holds_alternative<RecordedStep::Begun>(step.what)) {
        Array list;
        for (const auto& [name, path] : paths) list.emplace_back(path);
        found["paths"] = std::move(list);
    }
    if (std::holds_alternative<RecordedStep::TimePassed>(step.what)) {
        if (Array kept = keptScreens(); !kept.empty()) found["kept"] = std::move(kept);
    }
    noteScreens();
    if (Array names = newNames(); !names.empty()) found["names"] = std::move(names);
    found["memory"] = allocatedBytes();
    return found;
}

void PhoneHost::noteScreens() {
    for (const auto& screen : shownScreens()) screens_.emplace(screen->number(), screen);
    std::erase_if(screens_, [](const auto& entry) { return entry.second.expired(); });
}

/// Only those for which no delayed call can wait any more.
Array PhoneHost::keptScreens() {
    Array kept;
    if (platform::RunLoop::main().nextTimer()) return kept;
    std::set<std::uint64_t> shown;
    for (const auto& screen : shownScreens()) shown.insert(screen->number());
    for (const auto& [number, left] : screens_) {
        if (shown.contains(number)) continue;
        if (const auto screen = left.lock()) kept.emplace_back(screen->getClass().name());
    }
    return kept;
}

Array PhoneHost::newNames() {
    Array fresh;
    const auto note = [&](const std::string& name) {
        if (!name.empty() && names_.insert(name).second) fresh.emplace_back(name);
    };
    for (const auto& [name, count] : platform::NotificationCenter::defaultCenter().observerCounts())
        note(name);
    for (const auto& each : platform::DarwinNotificationCenter::shared().registrations()) note(each.name);
    return fresh;
}

}  // namespace settings
