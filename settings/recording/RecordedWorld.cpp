// SPDX-License-Identifier: MIT
#include "settings/recording/RecordedWorld.h"

#include <algorithm>
#include <utility>

#include "device/BrowserURLOpener.h"
#include "device/SeededRandom.h"
#include "device/mail/DesktopMail.h"
#include "platform/foundation/RunLoop.h"

namespace settings {

using device::DeviceOptions;
using platform::GlobalQueue;
using platform::Result;

namespace {

/// Nobody reads what a phone of another time has to say; its journal has it.
class SilentLog : public platform::LogSink {
  public:
    void write(const std::string& /*line*/) override {}
};

}  // namespace

std::unique_ptr<RecordedWorld> RecordedWorld::aroundRecorder(platform::Date start, std::uint32_t seed,
                                                             const std::string& rootDirectory) {
    using device::DatagramTransport;
    return std::unique_ptr<RecordedWorld>(new RecordedWorld(
        start, seed, Machine::IsThere,
        std::make_unique<DatagramTransport>(rootDirectory, DatagramTransport::OwnPosts::StayAway)));
}

std::unique_ptr<RecordedWorld> RecordedWorld::aroundReplay(platform::Date start, std::uint32_t seed) {
    return std::unique_ptr<RecordedWorld>(new RecordedWorld(start, seed, Machine::IsNot, nullptr));
}

RecordedWorld::RecordedWorld(platform::Date start, std::uint32_t seed, Machine isThere,
                             std::unique_ptr<device::DatagramTransport> others)
    : isThere_(isThere),
      time_(start),
      random_(std::make_shared<device::SeededRandom>(seed)),
      notifications_(std::make_shared<HeldNotifications>(std::move(others))),
      shell_(std::make_shared<RecordedShell>(notifications_, time_.clock())) {
    GlobalQueue::shared().setPlace(GlobalQueue::Place::MainLoop);
}

RecordedWorld::~RecordedWorld() {
    GlobalQueue::shared().setPlace(GlobalQueue::Place::Threads);
}

Result<DeviceOptions> RecordedWorld::changed(const DeviceOptions& options,
                                             const std::vector<std::string>& pairs) {
    if (std::ranges::none_of(pairs, DeviceOptions::isOfTheMachine)) return options.with(pairs);
    if (isThere_ == Machine::IsThere) {
        auto changed = options.with(pairs);
        machine_.noteRefusal({changed ? std::nullopt : std::optional(changed.error().localizedDescription)});
        return changed;
    }
    if (const auto refusal = machine_.recordedRefusal(); refusal.reason)
        return platform::failure(*refusal.reason);
    std::vector<std::string> rest = pairs;
    std::erase_if(rest, DeviceOptions::isOfTheMachine);
    return options.with(rest);
}

void RecordedWorld::equip(platform::Device& device, const DeviceOptions& options) {
    if (!options.clock) device.clock = time_.clock();
    device.random = random_;
    device.notifications = notifications_;
    device.processes = shell_;
    device.mail = std::make_shared<device::DesktopMail>(options.mailAccount, device::Desktop::IsLeftAlone);
    if (isThere_ == Machine::IsThere) {
        // The services are new each time, the log and the files are the same.
        if (!files_) {
            files_.emplace(device.files);
            device.files = files_->notingFiles();
            device.log = machine_.hearingLog(device.log);
            shell_->setFiles(device.files, [this](std::string_view path) { files_->noteOwnChange(path); });
        }
        machine_.setServices({device.calendars, device.networks, device.tones});
    } else {
        machine_.setServices({});
        shell_->setFiles(device.files, {});
        device.log = std::make_shared<SilentLog>();
        device.urls = std::make_shared<device::BrowserURLOpener>(
            options.twitterApp ? device::TwitterApplication::Installed : device::TwitterApplication::Absent,
            device::Desktop::IsLeftAlone);
    }
    device.calendars = recordedCalendars(machine_);
    device.networks = recordedNetworks(machine_);
    device.tones = recordedTones(machine_);
}

}  // namespace settings
