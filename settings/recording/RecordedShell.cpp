// SPDX-License-Identifier: MIT
#include "settings/recording/RecordedShell.h"

#include <algorithm>
#include <chrono>
#include <string>
#include <utility>

#include "device/PhonePaths.h"
#include "device/SystemShell.h"
#include "platform/foundation/Journal.h"
#include "platform/foundation/RunLoop.h"
#include "springboard/NotificationLog.h"
#include "springboard/SpringBoard.h"

namespace settings {

using platform::Journal;

namespace {

/// 2001-01-01 00:00:00 UTC in the machine's count, which begins in 1970.
constexpr double referenceSeconds = 978307200.0;

void recordProcess(const char* state) {
    Journal::shared().record("process", {{"name", device::SystemShell::name}, {"state", state}});
}

std::chrono::system_clock::time_point instant(platform::Date date) {
    return std::chrono::system_clock::time_point(
        std::chrono::duration_cast<std::chrono::system_clock::duration>(
            std::chrono::duration<double>(date.secondsSinceReference + referenceSeconds)));
}

}  // namespace

RecordedShell::RecordedShell(std::shared_ptr<HeldNotifications> notifications,
                             std::shared_ptr<const device::VirtualClock> clock)
    : notifications_(std::move(notifications)), clock_(std::move(clock)) {
    notifications_->setListener([this](const std::string& name) { write(name); });
    // Nobody reads the journal yet while the phone is put together.
    platform::dispatchMain([] { recordProcess("started"); });
}

void RecordedShell::setFiles(std::shared_ptr<platform::FileSystem> files,
                             std::function<void(std::string_view)> written) {
    files_ = std::move(files);
    written_ = std::move(written);
    static_cast<void>(files_->createDirectory(device::phonePaths::temporaryFiles));
}

bool RecordedShell::killProcessByName(std::string_view name) {
    if (name != device::SystemShell::name) return false;
    platform::dispatchMain([notifications = notifications_] {
        // A process that is started again is nobody's doing.
        const Journal::Causing causing{platform::Value()};
        recordProcess("ended");
        recordProcess("started");
        notifications->post(std::string(springboard::SpringBoard::appliedStateChanged));
    });
    return true;
}

void RecordedShell::write(const std::string& name) const {
    const auto& observed = springboard::SpringBoard::observedNames;
    if (!files_ || std::ranges::find(observed, name) == observed.end()) return;
    springboard::NotificationLog(files_->hostPath(device::phonePaths::shellLog))
        .write(instant(clock_->now()), name);
    if (written_) written_(device::phonePaths::shellLog);
}

}  // namespace settings
