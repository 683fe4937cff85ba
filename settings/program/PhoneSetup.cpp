// SPDX-License-Identifier: MIT
#include "settings/program/PhoneSetup.h"

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
    const auto& device = options.device;
    platform::Device phone;
    phone.log = std::make_shared<device::StandardErrorLog>("quietrix-settings");
    phone.files = files_;
    if (device.clock) {
        clock_ = std::make_shared<device::VirtualClock>(*device.clock);
        phone.clock = clock_;
    } else {
        phone.clock = std::make_shared<device::SystemClock>();
    }
    phone.notifications = std::make_shared<device::DatagramTransport>(options.rootDirectory);
    phone.facts = std::make_shared<device::SettableDeviceFacts>(device, files_);
    phone.urls = std::make_shared<device::BrowserURLOpener>(
        device.twitterApp ? device::TwitterApplication::Installed : device::TwitterApplication::Absent);
    phone.libraries = std::make_shared<device::ConfiguredLibraries>(
        device.statusBarLibrary ? device::StatusBarLibrary::Present : device::StatusBarLibrary::Absent,
        files_);
    phone.calendars = calendarSource(device.calendars, *files_);
    phone.networks = networkSource(device.networks, *files_);
    phone.tones = std::make_shared<device::ThemeTones>(device::SoundThemes(
        device.tones ? std::vector<fs::path>{*device.tones} : device::SoundThemes::systemDirectories()));
    phone.mail = std::make_shared<device::DesktopMail>(device.mailAccount);
    const auto shell = std::make_shared<device::SystemShell>(
        options.systemShell, std::filesystem::absolute(options.rootDirectory).string());
    phone.processes = shell;
    platform::Device::install(std::move(phone));
    for (const auto& name : device.toneController) platform::makeToneScreenClassExist(name);
    platform::Bundle::setMainBundlePath(std::string(applicationPath));
    if (shell->shortage()) return platform::failure(*shell->shortage());
    return {};
}

PhoneSetup::~PhoneSetup() {
    platform::DarwinNotificationCenter::shared().reset();
    platform::Device::install({});
}

}  // namespace settings
