// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <utility>

#include "platform/foundation/Error.h"
#include "settings/application/Application.h"
#include "settings/channels/Session.h"
#include "settings/recording/RecordedWorld.h"
#include "settings/recording/Recording.h"

namespace settings {

/// Has a phone live again what was recorded. Main thread.
class Replayer {
  public:
    /// The application was not started yet, on a phone in this world that has the recorded files; both
    /// outlive the replayer. `rootDirectory` is that phone's.
    Replayer(Application& application, RecordedWorld& world, std::string rootDirectory)
        : application_(application), world_(world), rootDirectory_(std::move(rootDirectory)) {}

    /// Does what came to the phone then; the steps come in the order of the recording. What comes back is the
    /// answer that this program gives, where the recording has one or none is to come. The error says what
    /// cannot be done.
    platform::Result<std::optional<std::string>> play(const RecordedStep& step);

  private:
    platform::Result<std::optional<std::string>> perform(const RecordedStep& step);
    platform::Result<void> change(const RecordedStep::FileChanged& file);
    std::string endWait();

    Application& application_;
    RecordedWorld& world_;
    std::string rootDirectory_;
    std::optional<Session> session_;
    /// Of a "wait" that was over sooner than the recorded one.
    std::optional<std::string> early_;
};

}  // namespace settings
