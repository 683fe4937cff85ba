// SPDX-License-Identifier: MIT
#include "settings/program/PhoneSetup.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

#include "device/BrowserURLOpener.h"
#include "device/ConfiguredLibraries.h"
#include "device/DatagramTransport.h"
#include "device/FreshRoot.h"
#include "device/PhonePaths.h"
#include "device/RootFileSystem.h"
#include "device/RootLink.h"
#include "device/SettableDeviceFacts.h"
#include "device/StandardErrorLog.h"
#include "device/SystemClock.h"
#include "device/SystemShell.h"
#include "device/calendars/CalendarFolders.h"
#include "device/faults/FaultyServices.h"
#include "device/mail/DesktopMail.h"
#include "device/networks/NetworkListFile.h"
#include "device/networks/NetworkManagerNetworks.h"
#include "device/tones/ThemeTones.h"
#include "platform/foundation/Bundle.h"
#include "platform/foundation/DarwinNotificationCenter.h"
#include "platform/foundation/Device.h"
#include "platform/foundation/FileManager.h"
#include "platform/tonekit/ToneScreen.h"
#include "settings/application/BundleOpening.h"

namespace settings {

namespace fs = std::filesystem;
using platform::Result;

namespace {

constexpr std::string_view applicationPath = "/Applications/Settings.app";

std::shared_ptr<platform::CalendarSource> calendarSource(const std::optional<std::string>& directory,
                                                         const platform::FileSystem& files) {
    using device::CalendarFolders;
    if (directory) return std::make_shared<CalendarFolders>(*directory, CalendarFolders::Missing::IsAFault);
    return std::make_shared<CalendarFolders>(files.hostPath(device::phonePaths::calendars),
                                             CalendarFolders::Missing::IsEmpty);
}

std::shared_ptr<platform::NetworkSource> networkSource(const device::DeviceOptions::Networks& networks,
                                                       const platform::FileSystem& files) {
    using Source = device::DeviceOptions::Networks::Source;
    using device::NetworkListFile;
    if (networks.source == Source::System) return std::make_shared<device::NetworkManagerNetworks>();
    if (networks.source == Source::File)
        return std::make_shared<NetworkListFile>(networks.file, NetworkListFile::Missing::IsAFault);
    return std::make_shared<NetworkListFile>(files.hostPath(device::phonePaths::knownNetworks),
                                             NetworkListFile::Missing::IsEmpty);
}

}  // namespace

Result<std::unique_ptr<PhoneSetup>> PhoneSetup::create(const PhoneOptions& options) {
    std::error_code error;
    const fs::path resources = fs::canonical(options.resourceDirectory, error);
    if (error) {
        return platform::failure("The application's own files are missing at \"" + options.resourceDirectory +
                                 "\".");
    }
    if (const auto ready =
            device::prepareRoot(options.rootDirectory, options.resourceDirectory, options.bundleDirectory);
        !ready) {
        return std::unexpected(ready.error());
    }
    std::unique_ptr<PhoneSetup> phone(new PhoneSetup);
    phone->files_ = std::make_shared<device::RootFileSystem>(options.rootDirectory);
    if (const auto linked = device::linkDirectory(options.rootDirectory, applicationPath, resources);
        !linked) {
        return std::unexpected(linked.error());
    }
    phone->bundlePath_ = platform::stringByAppendingPathComponent(
        device::phonePaths::preferenceBundles,
        fs::canonical(options.bundleDirectory, error).filename().string());
    if (const auto installed = phone->install(options); !installed) return std::unexpected(installed.error());
    if (const auto connected = platform::DarwinNotificationCenter::shared().connect(); !connected) {
        return std::unexpected(connected.error());
    }
    return phone;
}

Result<void> PhoneSetup::install(const PhoneOptions& options) {
    options_ = options.device;
    phone_.log = std::make_shared<device::StandardErrorLog>("quietrix-settings");
    phone_.files = files_;
    surroundings_ = options.surroundings;
    std::shared_ptr<device::SystemShell> shell;
    if (!surroundings_) {
        phone_.notifications = std::make_shared<device::DatagramTransport>(options.rootDirectory);
        shell = std::make_shared<device::SystemShell>(
            options.systemShell, std::filesystem::absolute(options.rootDirectory).string());
        phone_.processes = shell;
    }
    setClock();
    equip();
    platform::Bundle::setMainBundlePath(std::string(applicationPath));
    if (shell && shell->shortage()) return platform::failure(*shell->shortage());
    return {};
}

Result<device::DeviceOptions> PhoneSetup::changed(const std::vector<std::string>& pairs) const {
    return surroundings_ ? surroundings_->changed(options_, pairs) : options_.with(pairs);
}

Result<void> PhoneSetup::checkDevice(const std::vector<std::string>& pairs) const {
    const auto checked = changed(pairs);
    if (!checked) return std::unexpected(checked.error());
    return {};
}

Result<void> PhoneSetup::changeDevice(const std::vector<std::string>& pairs) {
    auto changed = this->changed(pairs);
    if (!changed) return std::unexpected(changed.error());
    const auto names = [&](std::string_view key) {
        return std::ranges::any_of(pairs, [&](const std::string& pair) { return pair.starts_with(key); });
    };
    // What was switched since, and the time that has passed, stay unless they are named.
    if (!names("darkMode=")) changed->darkMode = phone_.facts->isDarkMode();
    options_ = *std::move(changed);
    if (names("clock=")) setClock();
    equip();
    return {};
}

std::vector<std::string> PhoneSetup::devicePairs() const {
    device::DeviceOptions now = options_;
    now.darkMode = phone_.facts->isDarkMode();
    if (clock_) now.clock = clock_->now();
    return now.pairs();
}

void PhoneSetup::setClock() {
    clock_ = options_.clock ? std::make_shared<device::VirtualClock>(*options_.clock) : nullptr;
    phone_.clock = clock_;
    if (!clock_) phone_.clock = std::make_shared<device::SystemClock>();
}

void PhoneSetup::equip() {
    phone_.facts = std::make_shared<device::SettableDeviceFacts>(options_, files_);
    phone_.urls = std::make_shared<device::BrowserURLOpener>(
        options_.twitterApp ? device::TwitterApplication::Installed : device::TwitterApplication::Absent);
    phone_.libraries = std::make_shared<device::ConfiguredLibraries>(
        options_.statusBarLibrary ? device::StatusBarLibrary::Present : device::StatusBarLibrary::Absent,
        files_);
    phone_.calendars = calendarSource(options_.calendars, *files_);
    phone_.networks = networkSource(options_.networks, *files_);
    phone_.tones = std::make_shared<device::ThemeTones>(device::SoundThemes(
        options_.tones ? std::vector<fs::path>{*options_.tones} : device::SoundThemes::systemDirectories()));
    phone_.mail = std::make_shared<device::DesktopMail>(options_.mailAccount);
    if (surroundings_) surroundings_->equip(phone_, options_);
    platform::Device::install(device::withFaults(phone_, faults_));
    platform::forgetToneScreenClasses();
    for (const auto& name : options_.toneController) platform::makeToneScreenClassExist(name);
}

PhoneSetup::~PhoneSetup() {
    platform::DarwinNotificationCenter::shared().reset();
    platform::Device::install({});
}

}  // namespace settings
