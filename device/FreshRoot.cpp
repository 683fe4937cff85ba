// SPDX-License-Identifier: MIT
#include "device/FreshRoot.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <iterator>
#include <utility>

#include "device/HostFile.h"
#include "device/RootFileSystem.h"
#include "platform/foundation/PropertyList.h"

namespace device {

namespace {

namespace fs = std::filesystem;
using platform::failure;
using platform::Result;
using platform::Value;

constexpr const char* imagesDirectory = "/System/Library/PrivateFrameworks/PreferencesUI.framework";
constexpr const char* calendarsDirectory = "/var/mobile/Library/Calendars";
constexpr const char* preferencesDirectory = "/var/mobile/Library/Preferences";
constexpr const char* settingsFile = "/var/mobile/Library/Preferences/com.velmora.quietrix.plist";
constexpr const char* bundlesDirectory = "/Library/PreferenceBundles";
constexpr const char* temporaryDirectory = "/tmp";
constexpr const char* fillingFile = ".filling";
/// Another process needs far less to fill a root or to make a link.
constexpr double lockSeconds = 30.0;

std::unexpected<platform::Error> failed(const fs::path& path, const std::string& action, int errorNumber) {
    std::string sentence = '"' + path.string();
    sentence += "\" could not be " + action + ": " + host::message(errorNumber) + ".";
    return failure(std::move(sentence));
}

Result<void> makeDirectory(const fs::path& path) {
    if (const auto made = host::createDirectories(path.string()); !made)
        return failed(path, "created", made.error());
    return {};
}

Result<void> copyFile(const fs::path& from, const fs::path& to) {
    const auto data = host::readFile(from.string());
    if (!data) return failed(from, "read", data.error());
    if (const auto written = host::overwriteFile(to.string(), *data); !written) {
        return failed(to, "written", written.error());
    }
    return {};
}

Result<void> copyImages(const fs::path& from, const fs::path& to) {
    if (Result<void> made = makeDirectory(to); !made) return made;
    std::error_code error;
    for (fs::directory_iterator entry(from, error); !error && entry != fs::directory_iterator();
         entry.increment(error)) {
        if (entry->path().extension() != ".png") continue;
        if (Result<void> copied = copyFile(entry->path(), to / entry->path().filename()); !copied)
            return copied;
    }
    if (error) return failed(from, "read", error.value());
    return {};
}

Result<void> copyTree(const fs::path& from, const fs::path& to) {
    if (Result<void> made = makeDirectory(to); !made) return made;
    std::error_code error;
    for (fs::recursive_directory_iterator entry(from, error);
         !error && entry != fs::recursive_directory_iterator(); entry.increment(error)) {
        const fs::path target = to / entry->path().lexically_relative(from);
        const bool directory = entry->is_directory(error);
        if (error) break;
        if (Result<void> made = directory ? makeDirectory(target) : copyFile(entry->path(), target); !made)
            return made;
    }
    if (error) return failed(from, "read", error.value());
    return {};
}

Result<void> writeSettings(RootFileSystem& files) {
    const auto data = platform::PropertyListSerialization::dataWithPropertyList(
        platform::Dictionary{{"com.velmora.quietrix.enabled", Value(false)}},
        platform::PropertyListFormat::Binary);
    if (!data) return std::unexpected(data.error());
    return files.write(settingsFile, *data, platform::Write::Atomically);
}

Result<void> fill(const std::string& root, const fs::path& resources) {
    RootFileSystem files(root);
    const fs::path pictures = resources / "root";
    if (Result<void> copied = copyImages(pictures, files.hostPath(imagesDirectory)); !copied) return copied;
    if (Result<void> copied = copyTree(pictures / "calendars", files.hostPath(calendarsDirectory)); !copied)
        return copied;
    if (Result<void> made = makeDirectory(files.hostPath(temporaryDirectory)); !made) return made;
    if (Result<void> made = makeDirectory(files.hostPath(preferencesDirectory)); !made) return made;
    return writeSettings(files);
}

enum class Contents { Nothing, BeingFilled, Something };

Result<Contents> contents(const std::string& root) {
    std::error_code error;
    const fs::directory_iterator first(root, error);
    if (error) return failed(root, "read", error.value());
    if (first == fs::directory_iterator()) return Contents::Nothing;
    return fs::exists(fs::path(root) / fillingFile, error) ? Contents::BeingFilled : Contents::Something;
}

/// Fills the root if that is still to be done once the lock is had.
Result<void> fillOnce(const std::string& root, const std::string& resources) {
    const Result<Contents> before = contents(root);
    if (!before) return std::unexpected(before.error());
    if (*before == Contents::Something) return {};

    const fs::path marker = fs::path(root) / fillingFile;
    const Descriptor directory(open(root.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!directory) return failed(root, "opened", errno);
    // The directory is what is locked: the marker comes and goes.
    if (const auto locked = host::lock(directory.get(), lockSeconds); !locked) {
        return failed(root, "locked", locked.error());
    }
    const Result<Contents> now = contents(root);
    if (!now) return std::unexpected(now.error());
    if (*now == Contents::Something) return {};
    if (const auto marked = host::overwriteFile(marker.string(), {}); !marked) {
        return failed(root, "filled", marked.error());
    }
    if (Result<void> filled = fill(root, resources); !filled) return filled;
    if (unlink(marker.c_str()) != 0) return failed(marker, "removed", errno);
    return {};
}

Result<void> linkBundle(const std::string& root, const fs::path& bundle) {
    const fs::path bundles = RootFileSystem(root).hostPath(bundlesDirectory);
    if (Result<void> made = makeDirectory(bundles); !made) return made;
    const Descriptor directory(open(bundles.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!directory) return failed(bundles, "opened", errno);
    if (const auto locked = host::lock(directory.get(), lockSeconds); !locked) {
        return failed(bundles, "locked", locked.error());
    }
    const std::string name = bundle.filename().string();
    const std::string temporary = "." + name + ".new";
    std::error_code error;
    if (fs::read_symlink(bundles / name, error) == bundle && !error) return {};
    // Nobody else is at it while the lock is held, so one that is there was left by a killed process.
    unlinkat(directory.get(), temporary.c_str(), 0);
    if (symlinkat(bundle.c_str(), directory.get(), temporary.c_str()) != 0) {
        return failed(bundles / name, "linked to \"" + bundle.string() + "\"", errno);
    }
    if (renameat(directory.get(), temporary.c_str(), directory.get(), name.c_str()) != 0) {
        const int reason = errno;
        unlinkat(directory.get(), temporary.c_str(), 0);
        return failed(bundles / name, "linked to \"" + bundle.string() + "\"", reason);
    }
    return {};
}

}  // namespace

Result<void> prepareRoot(const std::string& rootDirectory, const std::string& resourceDirectory,
                         const std::string& bundleDirectory) {
    std::error_code error;
    const fs::path bundle = fs::canonical(bundleDirectory, error);
    if (error || !fs::is_directory(bundle, error)) {
        return failure("The bundle \"" + bundleDirectory + "\" is not a directory.");
    }
    const std::string root = RootFileSystem(rootDirectory).rootDirectory();
    if (fs::exists(root, error) && !fs::is_directory(root, error)) {
        return failure("The root \"" + root + "\" is not a directory.");
    }
    if (Result<void> made = makeDirectory(root); !made) return made;
    if (Result<void> filled = fillOnce(root, resourceDirectory); !filled) return filled;
    return linkBundle(root, bundle);
}

}  // namespace device
