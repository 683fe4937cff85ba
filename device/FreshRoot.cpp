// SPDX-License-Identifier: MIT
#include "device/FreshRoot.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <utility>

#include "device/EscapedText.h"
#include "device/HostFile.h"
#include "device/MainSettingsFile.h"
#include "device/PhonePaths.h"
#include "device/PrivateLock.h"
#include "device/RootFileSystem.h"
#include "device/RootLink.h"

namespace device {

namespace {

namespace fs = std::filesystem;
using platform::failure;
using platform::Result;

constexpr const char* fillingFile = ".filling";

std::unexpected<platform::Error> failed(const fs::path& path, const std::string& action, int errorNumber) {
    return failure(quotedText(path.native()) + " could not be " + action + ": " + host::message(errorNumber) +
                   ".");
}

Result<void> makeDirectory(const fs::path& path) {
    if (const auto made = host::createDirectories(path.string()); !made)
        return failed(path, "created", made.error());
    return {};
}

Result<void> copyFile(const fs::path& from, const fs::path& to) {
    const auto data = host::readFile(from.string());
    if (!data) return failed(from, "read", data.error());
    // One that is there is of a filling that did not come to its end. Nothing is
    // synced: it can be had again.
    unlink(to.c_str());
    if (const auto written = host::createFile(to.string(), *data, host::Sync::No); !written)
        return failed(to, "written", written.error());
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

Result<void> fill(const std::string& root, const fs::path& resources) {
    const RootFileSystem files(root);
    const fs::path pictures = resources / "root";
    if (Result<void> copied = copyImages(pictures, files.hostPath(phonePaths::systemImages)); !copied)
        return copied;
    if (Result<void> copied = copyTree(pictures / "calendars", files.hostPath(phonePaths::calendars));
        !copied)
        return copied;
    if (Result<void> made = makeDirectory(files.hostPath(phonePaths::temporaryFiles)); !made) return made;
    if (Result<void> made = makeDirectory(files.hostPath(phonePaths::preferences)); !made) return made;
    return MainSettingsFile(root).makeFresh();
}

enum class Contents { Nothing, BeingFilled, Something };

/// Whether the entry of a root is nothing but the way to the notifications: a program that goes on in a root
/// that was taken away and made anew listens there before anybody has filled it.
bool holdsOnlyNotifications(const fs::path& directory) {
    const fs::path way = fs::path(phonePaths::notifications).relative_path();
    if (directory.filename() != *way.begin()) return false;
    std::error_code error;
    for (fs::recursive_directory_iterator entry(directory, error);
         !error && entry != fs::recursive_directory_iterator(); entry.increment(error)) {
        const fs::path path = entry->path().lexically_relative(directory.parent_path());
        const auto [end, rest] = std::ranges::mismatch(path, way);
        if (end != path.end() && rest != way.end()) return false;
    }
    return !error;
}

Result<Contents> contents(const std::string& root) {
    std::error_code error;
    if (fs::exists(fs::path(root) / fillingFile, error)) return Contents::BeingFilled;
    for (fs::directory_iterator entry(root, error); !error && entry != fs::directory_iterator();
         entry.increment(error)) {
        const fs::path name = entry->path().filename();
        if (name == PrivateLock::folderName) continue;
        if (!holdsOnlyNotifications(entry->path())) return Contents::Something;
    }
    if (error) return failed(root, "read", error.value());
    return Contents::Nothing;
}

/// Fills the root if that is still to be done once the lock is had.
Result<void> fillOnce(const std::string& root, const std::string& resources) {
    const Result<Contents> before = contents(root);
    if (!before) return std::unexpected(before.error());
    if (*before == Contents::Something) return {};

    const auto lock = lockRoot(root);
    if (!lock) return std::unexpected(lock.error());
    const Result<Contents> now = contents(root);
    if (!now) return std::unexpected(now.error());
    if (*now == Contents::Something) return {};
    const fs::path marker = fs::path(root) / fillingFile;
    const auto marked = host::createFile(marker.string(), {}, host::Sync::No);
    if (!marked && marked.error() != EEXIST) return failed(root, "filled", marked.error());
    if (Result<void> filled = fill(root, resources); !filled) return filled;
    if (unlink(marker.c_str()) != 0) return failed(marker, "removed", errno);
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
    MainSettingsFile(root).mend();
    return linkDirectory(root, std::string(phonePaths::preferenceBundles) + "/" + bundle.filename().string(),
                         bundle);
}

Result<bool> isUnfilledRoot(const std::string& rootDirectory) {
    std::error_code error;
    const std::string root = RootFileSystem(rootDirectory).rootDirectory();
    if (!fs::exists(root, error) && !error) return true;
    const Result<Contents> present = contents(root);
    if (!present) return std::unexpected(present.error());
    return *present != Contents::Something;
}

}  // namespace device
