// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "device/DeviceOptions.h"
#include "device/VirtualClock.h"
#include "platform/foundation/Device.h"
#include "platform/foundation/Error.h"
#include "platform/foundation/FileSystem.h"
#include "settings/application/RunningPhone.h"
#include "settings/application/Surroundings.h"

namespace settings {

/// What a phone is set up from. Host paths.
struct PhoneOptions {
    std::string rootDirectory;
    std::string bundleDirectory;
    /// The application's own bundle.
    std::string resourceDirectory;
    device::DeviceOptions device;
    /// The program of the system shell.
    std::string systemShell;
    /// Null for this machine; outlives the phone.
    Surroundings* surroundings = nullptr;
};

/// The phone that the application runs on: a root directory made ready, the device's services installed for
/// the platform, the application's own bundle in place, the Darwin notifications connected. As long as it
/// lives, no other one may. Main thread.
class PhoneSetup : public RunningPhone {
  public:
    /// The error is one sentence that names what cannot be used.
    static platform::Result<std::unique_ptr<PhoneSetup>> create(const PhoneOptions& options);
    /// Takes the services away again, so that they remove what they left in the root.
    ~PhoneSetup() override;
    PhoneSetup(const PhoneSetup&) = delete;
    PhoneSetup& operator=(const PhoneSetup&) = delete;

    /// The phone path of the given bundle.
    const std::string& bundlePath() const { return bundlePath_; }
    /// How it is equipped by now.
    const device::DeviceOptions& options() const { return options_; }
    platform::Result<void> checkDevice(const std::vector<std::string>& pairs) const override;
    platform::Result<void> changeDevice(const std::vector<std::string>& pairs) override;
    std::vector<std::string> devicePairs() const override;
    std::shared_ptr<device::VirtualClock> clock() const override { return clock_; }
    std::shared_ptr<platform::FileSystem> files() const override { return files_; }
    device::Faults& faults() override { return *faults_; }

  private:
    PhoneSetup() = default;
    platform::Result<void> install(const PhoneOptions& options);
    /// Makes anew what depends on the options and puts the whole in place.
    void equip();
    void setClock();
    platform::Result<device::DeviceOptions> changed(const std::vector<std::string>& pairs) const;

    std::string bundlePath_;
    device::DeviceOptions options_;
    Surroundings* surroundings_ = nullptr;
    /// Without faults.
    platform::Device phone_;
    std::shared_ptr<device::Faults> faults_ = std::make_shared<device::Faults>();
    std::shared_ptr<platform::FileSystem> files_;
    std::shared_ptr<device::VirtualClock> clock_;
};

}  // namespace settings
