// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "settings/application/Surroundings.h"
#include "settings/recording/FileWatch.h"
#include "settings/recording/HeldNotifications.h"
#include "settings/recording/RecordedMachine.h"
#include "settings/recording/RecordedShell.h"
#include "settings/recording/RecordedTime.h"

namespace settings {

/// The surroundings of a phone on which everything happens in an order, and at times, that do not depend on
/// the machine: one that is recorded, or replayed. While it lives, background work is done on the main run
/// loop. It must outlive the phone. One at a time; main thread.
class RecordedWorld : public Surroundings {
  public:
    /// That of a phone which is recorded: it has this machine, and the root's other processes. A host path.
    static std::unique_ptr<RecordedWorld> aroundRecorder(platform::Date start, std::uint32_t seed,
                                                         const std::string& rootDirectory);
    /// That of a phone which is replayed: nothing reaches it, and it reaches nothing.
    static std::unique_ptr<RecordedWorld> aroundReplay(platform::Date start, std::uint32_t seed);
    ~RecordedWorld() override;
    RecordedWorld(const RecordedWorld&) = delete;
    RecordedWorld& operator=(const RecordedWorld&) = delete;

    /// Without a machine, what names a place of one is passed over.
    platform::Result<device::DeviceOptions> changed(const device::DeviceOptions& options,
                                                    const std::vector<std::string>& pairs) override;
    void equip(platform::Device& device, const device::DeviceOptions& options) override;

    RecordedTime& time() { return time_; }
    HeldNotifications& notifications() { return *notifications_; }
    RecordedMachine& machine() { return machine_; }
    /// The root's files of a phone that is recorded and was set up, which tells its own changes from others'.
    FileWatch& files() { return *files_; }

  private:
    enum class Machine { IsThere, IsNot };
    RecordedWorld(platform::Date start, std::uint32_t seed, Machine isThere,
                  std::unique_ptr<device::DatagramTransport> others);

    Machine isThere_;
    RecordedTime time_;
    std::shared_ptr<platform::RandomSource> random_;
    std::shared_ptr<HeldNotifications> notifications_;
    std::shared_ptr<RecordedShell> shell_;
    RecordedMachine machine_;
    std::optional<FileWatch> files_;
};

}  // namespace settings
