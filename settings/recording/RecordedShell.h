// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <string_view>

#include "device/VirtualClock.h"
#include "platform/foundation/FileSystem.h"
#include "platform/foundation/Processes.h"
#include "settings/recording/HeldNotifications.h"

namespace settings {

/// The phone's system shell as far as the phone sees it, without a process of its own, so that it takes no
/// time: its starts and ends in the journal, its lines in the log, and what it posts when it is back. Killed,
/// it is back with the main run loop's next task. Main thread.
class RecordedShell : public platform::Processes {
  public:
    /// Hears what `notifications` gets, which outlives it; tells the time of its lines by `clock`.
    RecordedShell(std::shared_ptr<HeldNotifications> notifications,
                  std::shared_ptr<const device::VirtualClock> clock);

    /// The phone's files, where the log is. Until then, nothing is logged. `written` is told the phone path
    /// of the log after each line; may be empty.
    void setFiles(std::shared_ptr<platform::FileSystem> files, std::function<void(std::string_view)> written);
    bool killProcessByName(std::string_view name) override;

  private:
    void write(const std::string& name) const;

    std::shared_ptr<HeldNotifications> notifications_;
    std::shared_ptr<const device::VirtualClock> clock_;
    std::shared_ptr<platform::FileSystem> files_;
    std::function<void(std::string_view)> written_;
};

}  // namespace settings
