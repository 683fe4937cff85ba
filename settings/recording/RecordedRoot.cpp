// SPDX-License-Identifier: MIT
#include "settings/recording/RecordedRoot.h"

#include <filesystem>
#include <system_error>

#include "device/HostFile.h"
#include "device/PhonePaths.h"
#include "device/PrivateLock.h"
#include "device/RootFileHistory.h"
#include "device/RootFileSystem.h"

namespace settings {

namespace fs = std::filesystem;
using platform::failure;
using platform::Result;

namespace {

constexpr std::uintmax_t mostBytes = std::uintmax_t{64} << 20;

std::unexpected<platform::Error> failed(const std::string& path, const std::string& action,
                                        const std::string& reason) {
    return failure("\"" + path + "\" could not be " + action + ": " + reason + ".");
}

/// Sockets and locks of living processes.
bool isOfProcesses(const fs::path& phonePath) {
    return phonePath == device::phonePaths::notifications ||
           phonePath.filename() == device::PrivateLock::folderName;
}

}  // namespace

Result<RootFiles> filesOfRoot(const std::string& rootDirectory) {
    RootFiles files;
    std::uintmax_t bytes = 0;
    std::error_code error;
    fs::recursive_directory_iterator entry(rootDirectory, error);
    for (; !error && entry != fs::recursive_directory_iterator(); entry.increment(error)) {
        const std::string path = "/" + entry->path().lexically_relative(rootDirectory).string();
        // A replay begins with the files as they are, not with what they were.
        if (isOfProcesses(path) || device::RootFileHistory::isFolderName(entry->path().filename().string())) {
            entry.disable_recursion_pending();
            continue;
        }
        if (entry->is_symlink(error) || !entry->is_regular_file(error)) continue;
        bytes += entry->file_size(error);
        if (bytes > mostBytes) return failed(rootDirectory, "recorded", "it has more than 64 MiB");
        auto data = device::host::readFile(entry->path().string());
        if (!data) return failed(path, "recorded", device::host::message(data.error()));
        files.emplace(path, *std::move(data));
    }
    if (error) return failed(rootDirectory, "recorded", error.message());
    return files;
}

Result<TemporaryRoot> TemporaryRoot::create(const RootFiles& files) {
    auto folder = device::TemporaryFolder::create();
    if (!folder) return failure("No directory could be made for the phone: " + folder.error() + ".");
    TemporaryRoot root(*std::move(folder));
    const device::RootFileSystem phone(root.path());
    for (const auto& [phonePath, bytes] : files) {
        const std::string hostPath = phone.hostPath(phonePath);
        if (hostPath.empty()) return failed(phonePath, "made", "it is no path of the phone");
        const auto made = device::host::createDirectories(fs::path(hostPath).parent_path().string());
        if (!made) return failed(phonePath, "made", device::host::message(made.error()));
        const auto written = device::host::createFile(hostPath, bytes, device::host::Sync::No);
        if (!written) return failed(phonePath, "made", device::host::message(written.error()));
    }
    return root;
}

}  // namespace settings
