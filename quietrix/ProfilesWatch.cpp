// SPDX-License-Identifier: MIT
#include "quietrix/ProfilesWatch.h"

#include <poll.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <chrono>
#include <csignal>

#include "device/Descriptor.h"
#include "device/EscapedText.h"
#include "device/Interruption.h"
#include "device/PhonePaths.h"
#include "device/UniversalTime.h"
#include "platform/foundation/DarwinNotificationCenter.h"
#include "platform/foundation/RunLoop.h"
#include "quietrix/JSONText.h"
#include "shell/base/MainSettings.h"
#include "shell/base/NotificationNames.h"

namespace console {

using platform::RunLoop;

namespace {

/// For what nobody tells: a directory that comes, files behind links, an output that nobody reads any more.
constexpr double secondsBetweenLooks = 1.0;

/// "2026-11-20T09:00:00.125Z"
std::string now() {
    using namespace std::chrono;
    const auto moment = floor<milliseconds>(system_clock::now());
    const auto second = floor<seconds>(moment);
    const std::string digits = std::to_string(1000 + (moment - second).count());
    return device::universalTimeText(system_clock::to_time_t(second), "%Y-%m-%dT%H:%M:%S") + "." +
           digits.substr(1) + "Z";
}

bool isRead(int descriptor) {
    pollfd output{descriptor, 0, 0};
    return poll(&output, 1, 0) <= 0;
}

}  // namespace

ProfilesWatch::ProfilesWatch(Session& session)
    : session_(session),
      folder_(session.files().hostPath(device::phonePaths::preferences), [this] { look(); }) {
    observe();
}

void ProfilesWatch::observe() {
    const auto observed = [](platform::DarwinNotificationCenter&, void* observer, const std::string& name,
                             const void*, const platform::Value&) {
        auto& self = *static_cast<ProfilesWatch*>(observer);
        self.look();
        if (name == quietrix::ProfileAppliedStateChangedNotification) self.tell("applied");
    };
    for (const std::string_view name :
         {quietrix::ProfileAddedNotification, quietrix::ProfileChangedNotification,
          quietrix::ProfileDeletedNotification, quietrix::ProfileAppliedStateChangedNotification,
          quietrix::QuietrixEnabledOrDisableNotification}) {
        platform::CFNotificationCenterAddObserver(
            platform::CFNotificationCenterGetDarwinNotifyCenter(), this, observed, name, nullptr,
            platform::CFNotificationSuspensionBehavior::DeliverImmediately);
    }
}

void ProfilesWatch::run() {
    const sigset_t ends = device::endingSignals();
    // Before the transport's thread starts, which takes over which signals are held back.
    pthread_sigmask(SIG_BLOCK, &ends, nullptr);
    const device::Descriptor signals(signalfd(-1, &ends, SFD_CLOEXEC));
    if (signals) RunLoop::main().watch(signals.get(), [] { RunLoop::main().stop(); });
    session_.output().waitUntil(signals.get());
    tick();
    tells_ = true;
    session_.output().note("Watching " + device::quotedText(session_.files().rootDirectory()) + ".");
    RunLoop::main().run();
    if (signals) RunLoop::main().unwatch(signals.get());
    session_.output().waitUntil(-1);
}

void ProfilesWatch::tick() {
    folder_.renew();
    connect();
    look();
    if (!isRead(STDOUT_FILENO)) return RunLoop::main().stop();
    RunLoop::main().performAfterDelay(secondsBetweenLooks, [this] { tick(); });
}

void ProfilesWatch::connect() {
    // Where there is no phone yet nobody listens, and what listening makes would keep one from being made.
    if (isConnected_ || !session_.files().isDirectory(device::phonePaths::preferences)) return;
    const auto connected = session_.connect();
    isConnected_ = connected.has_value();
    if (isConnected_ || std::exchange(hasSaidWhyNot_, true)) return;
    session_.output().log("What other programs post is not heard, and changes may be told a second late. " +
                          connected.error().localizedDescription);
}

void ProfilesWatch::look() {
    lookAtSwitch();
    lookAtProfiles();
}

void ProfilesWatch::lookAtProfiles() {
    auto present = session_.profiles();
    // The store has told why the file cannot be used; it may be another one in a moment.
    if (!present || *present == records_) return;
    records_ = *std::move(present);
    States states;
    for (const auto& profile : records_)
        states[profile->identifier()] = {profile->title(), profile->storedValues()};
    const States before = std::exchange(states_, std::move(states));
    for (const auto& [identifier, state] : before)
        if (!states_.contains(identifier)) tell("deleted", identifier, state.title, state.values, {});
    for (const auto& profile : records_) {
        const State& state = states_.at(profile->identifier());
        const auto old = before.find(profile->identifier());
        if (old == before.end()) {
            tell("added", profile->identifier(), state.title, {}, state.values);
        } else {
            tell("changed", old->first, state.title, old->second.values, state.values);
        }
    }
}

void ProfilesWatch::lookAtSwitch() {
    const auto settings = session_.settings();
    // It is written in place: half of it is no reason to tell anything.
    if (!settings) return;
    const bool isOn = (*settings)[quietrix::productSwitchKey()].isTrue();
    if (std::exchange(isOn_, isOn) != isOn) tell(isOn ? "enabled" : "disabled");
}

void ProfilesWatch::tell(std::string_view event, const std::string& identifier, const std::string& title,
                         const platform::Dictionary& before, const platform::Dictionary& after) {
    const auto changes = differenceBetween(before, after);
    if (!tells_ || changes.empty()) return;
    if (event == "changed" && changes.size() == 1 && changes.front().key == "enabled")
        event = changes.front().after.isTrue() ? "enabled" : "disabled";
    if (session_.output().isJSON()) {
        write(jsonText(boost::json::object{{"at", now()},
                                           {"event", boost::json::string_view(event.data(), event.size())},
                                           {"identifier", device::escapedText(identifier)},
                                           {"changes", jsonOfChanges(changes)}}));
        return;
    }
    std::string line = now() + " " + std::string(event) + " " +
                       device::visibleText("\"" + title + "\" (" + identifier + ")");
    if (event == "changed") line += ": " + changesInWords(changes);
    write(line);
}

void ProfilesWatch::tell(std::string_view event) {
    if (!tells_) return;
    if (!session_.output().isJSON()) return write(now() + " " + std::string(event));
    write(jsonText(
        boost::json::object{{"at", now()}, {"event", boost::json::string_view(event.data(), event.size())}}));
}

void ProfilesWatch::write(const std::string& line) {
    if (!session_.output().write(line + "\n")) RunLoop::main().stop();
}

}  // namespace console
