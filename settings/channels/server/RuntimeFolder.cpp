// SPDX-License-Identifier: MIT
#include "settings/channels/server/RuntimeFolder.h"

#include <fcntl.h>
#include <glib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <memory>
#include <system_error>
#include <utility>

namespace settings::server {

using platform::Result;

namespace {

constexpr const char* folderName = "quietrix-settings";
constexpr mode_t accessOfOthers = S_IRWXG | S_IRWXO;

std::unexpected<platform::Error> failureOf(const std::string& path, const std::string& reason) {
    return platform::failure("\"" + path + "\" " + reason + ".");
}

std::unexpected<platform::Error> systemFailureOf(const std::string& path, const char* what) {
    return failureOf(path, std::string(what) + ": " + std::strerror(errno));
}

Result<int> openOwnDirectory(int parent, const std::string& name, const std::string& path, int flags) {
    const int directory = openat(parent, name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | flags);
    if (directory < 0) return systemFailureOf(path, "cannot be opened");
    const std::string strange = RuntimeFolder::strangenessOf(directory);
    if (strange.empty()) return directory;
    close(directory);
    return failureOf(path, strange);
}

}  // namespace

Result<RuntimeFolder> RuntimeFolder::open(const std::string& runtimeDirectory) {
    if (!runtimeDirectory.starts_with('/')) return failureOf(runtimeDirectory, "is no absolute path");
    const auto parent = openOwnDirectory(AT_FDCWD, runtimeDirectory, runtimeDirectory, 0);
    if (!parent) return std::unexpected(parent.error());
    const RuntimeFolder runtime(*parent, runtimeDirectory);
    const std::string path = runtimeDirectory + "/" + folderName;
    if (mkdirat(*parent, folderName, S_IRWXU) != 0 && errno != EEXIST)
        return systemFailureOf(path, "cannot be made");
    const auto folder = openOwnDirectory(*parent, folderName, path, O_NOFOLLOW);
    if (!folder) return std::unexpected(folder.error());
    return RuntimeFolder(*folder, path);
}

RuntimeFolder::RuntimeFolder(RuntimeFolder&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)), path_(std::move(other.path_)) {}

RuntimeFolder::~RuntimeFolder() {
    if (descriptor_ >= 0) close(descriptor_);
}

std::string RuntimeFolder::strangenessOf(int descriptor) {
    struct stat facts{};
    if (fstat(descriptor, &facts) != 0) return std::string("cannot be looked at: ") + std::strerror(errno);
    if (facts.st_uid != geteuid()) return "belongs to another user";
    if ((facts.st_mode & accessOfOthers) != 0) return "is open to other users";
    return {};
}

std::string RuntimeFolder::digestOfRoot(const std::string& rootDirectory) {
    std::error_code error;
    // The root may be made only after it is asked for, and then has to be the same: whole, and without a
    // slash behind it.
    auto whole = std::filesystem::absolute(rootDirectory, error).lexically_normal();
    if (!whole.has_filename()) whole = whole.parent_path();
    const auto canonical = std::filesystem::weakly_canonical(whole, error);
    const std::string root = error ? rootDirectory : canonical.string();
    const std::unique_ptr<char, decltype(&g_free)> digest(
        g_compute_checksum_for_string(G_CHECKSUM_SHA256, root.data(), static_cast<gssize>(root.size())),
        g_free);
    return digest.get();
}

}  // namespace settings::server
