// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>

#include "device/DeviceOptions.h"
#include "device/VirtualClock.h"
#include "platform/foundation/Error.h"
#include "platform/foundation/FileSystem.h"

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
};

/// The phone that the application runs on: a root directory made ready, the device's services installed for
/// the platform, the application's own bundle in place, the Darwin notifications connected. As long as it
/// lives, no other one may. Main thread.
class PhoneSetup {
  public:
    /// The error is one sentence that names what cannot be used.
    static platform::Result<std::unique_ptr<PhoneSetup>> create(const PhoneOptions& options);
    /// Takes the services away again, so that they remove what they left in the root.
    ~PhoneSetup();
    PhoneSetup(const PhoneSetup&) = delete;
    PhoneSetup& operator=(const PhoneSetup&) = delete;

    /// The phone path of the given bundle.
    const std::string& bundlePath() const { return bundlePath_; }
    /// Null when the phone has the machine's time.
    const std::shared_ptr<device::VirtualClock>& clock() const { return clock_; }
    const std::shared_ptr<platform::FileSystem>& files() const { return files_; }

  private:
    PhoneSetup() = default;
    platform::Result<void> install(const PhoneOptions& options);

    std::string bundlePath_;
    std::shared_ptr<platform::FileSystem> files_;
    std::shared_ptr<device::VirtualClock> clock_;
};

}  // namespace settings
