// SPDX-License-Identifier: MIT
#include "settings/recording/Replayer.h"

#include <filesystem>
#include <system_error>
#include <utility>

#include "platform/foundation/RunLoop.h"

namespace settings {

using platform::Result;
using platform::RunLoop;
using std::chrono::milliseconds;
using Instant = std::chrono::steady_clock::time_point;
using Step = RecordedStep;

namespace {

namespace fs = std::filesystem;

/// Whether links that a phone's paths may go through keep it in the root.
bool isWithin(const fs::path& path, const fs::path& root) {
    std::error_code error;
    const fs::path real = fs::weakly_canonical(path, error);
    if (error) return false;
    const fs::path within = real.lexically_relative(fs::canonical(root, error));
    return !error && !within.empty() && *within.begin() != "..";
}

}  // namespace

Result<std::optional<std::string>> Replayer::play(const Step& step) {
    world_.machine().beginStep(step.found);
    application_.keepUp();
    world_.time().goOnTo(step.time);
    auto answer = perform(step);
    RunLoop::main().drain();
    return answer;
}

Result<std::optional<std::string>> Replayer::perform(const Step& step) {
    if (std::holds_alternative<Step::Begun>(step.what)) {
        application_.start();
        session_.emplace(application_, Session::veryLong,
                         [this] { return Instant(milliseconds(world_.time().milliseconds())); });
    } else if (const auto* command = std::get_if<Step::Command>(&step.what)) {
        early_ = session_->begin(command->line);
        if (step.answer) return early_ ? std::exchange(early_, {}) : endWait();
    } else if (std::holds_alternative<Step::OversizedLine>(step.what)) {
        return session_->answerToOversizedLine();
    } else if (std::holds_alternative<Step::WaitOver>(step.what)) {
        return early_ ? std::exchange(early_, {}) : endWait();
    } else if (const auto* notified = std::get_if<Step::Notified>(&step.what)) {
        world_.notifications().deliver(notified->name);
    } else if (const auto* file = std::get_if<Step::FileChanged>(&step.what)) {
        if (const Result<void> changed = change(*file); !changed) return std::unexpected(changed.error());
    }
    return std::nullopt;
}

Result<void> Replayer::change(const Step::FileChanged& file) {
    const auto files = application_.phone()->files();
    if (!isWithin(files->hostPath(file.path), rootDirectory_))
        return platform::failure("The file \"" + file.path + "\" is not the phone's own.");
    if (!file.bytes) {
        static_cast<void>(files->remove(file.path));
        return {};
    }
    if (const auto made = files->createDirectory(file.path.substr(0, file.path.rfind('/'))); !made)
        return std::unexpected(made.error());
    return files->write(file.path, *file.bytes, platform::Write::Atomically);
}

/// Now that the recorded one was over; one that goes on goes on to its end.
std::string Replayer::endWait() {
    if (auto answer = session_->resume()) return *std::move(answer);
    const auto end = std::chrono::ceil<milliseconds>(session_->waitsUntil()->time_since_epoch());
    world_.time().goOnTo(end.count());
    return session_->resume().value_or("{}");
}

}  // namespace settings
