// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "device/Descriptor.h"
#include "platform/foundation/Error.h"
#include "settings/application/Application.h"
#include "settings/channels/LineReader.h"
#include "settings/channels/Session.h"
#include "settings/recording/RecordedWorld.h"
#include "settings/recording/Recording.h"

namespace settings {

/// A session whose commands and answers are written down, with whatever came to the phone from outside in
/// between. What others do is taken in between two commands, and while a "wait" waits. Main thread.
class Recorder {
  public:
    /// An open file for a new recording. A file with something in it is not written over, and
    /// one that another recorder has open is left to that. A host path.
    static platform::Result<device::Descriptor> createFile(const std::string& path);

    /// The application was not started yet, on a phone in this world; both outlive the recorder.
    Recorder(Application& application, RecordedWorld& world, device::Descriptor file);

    /// Writes the beginning, and starts the application.
    platform::Result<void> begin(const RecordingStart& start);
    /// Does what the line says and gives the answer. The error says why that could not be written down.
    platform::Result<std::string> answer(const LineReader::Line& line);
    /// After the last line.
    platform::Result<void> end();

  private:
    using Instant = std::chrono::steady_clock::time_point;

    std::int64_t elapsed() const;
    void beginStep(std::int64_t time);
    platform::Result<void> endStep(decltype(RecordedStep::what) what,
                                   std::optional<std::string> answer = std::nullopt);
    /// What others have done since the last time.
    platform::Result<void> takeOutside();
    platform::Result<void> takeFile(const std::string& path);
    platform::Result<std::string> awaitAnswer();
    void sleepUntilSomething();
    bool isTimerDue() const;
    std::vector<std::string> watchedPaths() const;
    platform::Result<void> write(const std::string& line);

    Application& application_;
    RecordedWorld& world_;
    device::Descriptor file_;
    std::optional<Session> session_;
    Instant start_;
};

}  // namespace settings
