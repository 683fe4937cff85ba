// SPDX-License-Identifier: MIT
#include "settings/channels/server/RunningServer.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

namespace settings::server {

using platform::Result;

namespace {

constexpr std::string_view before =
    "<!doctype html><meta charset=\"utf-8\"><title>Quietrix Settings</title>"
    "<meta http-equiv=\"refresh\" content=\"0; url=";
constexpr std::string_view after = "\">\n";

std::string prefixFor(const std::string& rootDirectory) {
    return "running-" + RuntimeFolder::digestOfRoot(rootDirectory) + "-";
}

std::unexpected<platform::Error> failureOf(const std::string& path, const char* what) {
    return platform::failure("\"" + path + "\" " + what + ": " + std::strerror(errno) + ".");
}

std::vector<std::string> namesIn(const RuntimeFolder& folder, const std::string& prefix) {
    std::vector<std::string> names;
    std::error_code error;
    for (std::filesystem::directory_iterator each(folder.path(), error), end; !error && each != end;
         each.increment(error)) {
        std::string name = each->path().filename().string();
        if (name.starts_with(prefix)) names.push_back(std::move(name));
    }
    std::ranges::sort(names);
    return names;
}

std::int64_t modificationOf(int file) {
    struct stat facts{};
    if (fstat(file, &facts) != 0) return 0;
    return std::int64_t{facts.st_mtim.tv_sec} * 1'000'000'000 + facts.st_mtim.tv_nsec;
}

/// Whether the open file still is the one of that name.
bool hasName(const RuntimeFolder& folder, const std::string& name, int file) {
    struct stat named{};
    struct stat opened{};
    return fstatat(folder.descriptor(), name.c_str(), &named, AT_SYMLINK_NOFOLLOW) == 0 &&
           fstat(file, &opened) == 0 && named.st_dev == opened.st_dev && named.st_ino == opened.st_ino;
}

/// The address that the open file leads to, while its server runs; what another has left is taken away.
std::optional<std::string> addressIn(const RuntimeFolder& folder, const std::string& name, int file) {
    if (!RuntimeFolder::strangenessOf(file).empty()) return std::nullopt;
    if (flock(file, LOCK_SH | LOCK_NB) == 0) {
        unlinkat(folder.descriptor(), name.c_str(), 0);
        return std::nullopt;
    }
    if (errno != EWOULDBLOCK) return std::nullopt;
    std::array<char, 1024> bytes{};
    const ssize_t count = read(file, bytes.data(), bytes.size());
    std::string_view text(bytes.data(), count < 0 ? 0 : static_cast<std::size_t>(count));
    if (!text.starts_with(before) || !text.ends_with(after)) return std::nullopt;
    text.remove_prefix(before.size());
    text.remove_suffix(after.size());
    // The server sees this, or has taken the name away before.
    futimens(file, nullptr);
    if (!hasName(folder, name, file)) return std::nullopt;
    return std::string(text);
}

}  // namespace

Result<RunningServer> RunningServer::announce(const std::string& runtimeDirectory,
                                              const std::string& rootDirectory, const std::string& url) {
    auto folder = RuntimeFolder::open(runtimeDirectory);
    if (!folder) return std::unexpected(folder.error());
    const std::string name = prefixFor(rootDirectory) + std::to_string(getpid()) + ".html";
    const std::string temporary = "." + name;
    const std::string path = folder->path() + "/" + name;
    unlinkat(folder->descriptor(), temporary.c_str(), 0);
    const int file = openat(folder->descriptor(), temporary.c_str(),
                            O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, S_IRUSR | S_IWUSR);
    if (file < 0) return failureOf(path, "cannot be made");
    const std::string text = std::string(before) + url + std::string(after);
    // Under its own name it is locked from its first instant on.
    const bool isWritten =
        flock(file, LOCK_EX | LOCK_NB) == 0 &&
        write(file, text.data(), text.size()) == static_cast<ssize_t>(text.size()) &&
        renameat(folder->descriptor(), temporary.c_str(), folder->descriptor(), name.c_str()) == 0;
    if (isWritten) return RunningServer(std::move(*folder), name, file);
    auto failed = failureOf(path, "cannot be written");
    unlinkat(folder->descriptor(), temporary.c_str(), 0);
    close(file);
    return failed;
}

RunningServer::RunningServer(RuntimeFolder folder, std::string name, int descriptor)
    : folder_(std::move(folder)),
      name_(std::move(name)),
      foundAt_(modificationOf(descriptor)),
      descriptor_(descriptor) {}

RunningServer::RunningServer(RunningServer&& other) noexcept
    : folder_(std::move(other.folder_)),
      name_(std::move(other.name_)),
      foundAt_(other.foundAt_),
      descriptor_(std::exchange(other.descriptor_, -1)) {}

RunningServer::~RunningServer() {
    if (descriptor_ < 0) return;
    unlinkat(folder_.descriptor(), name_.c_str(), 0);
    close(descriptor_);
}

bool RunningServer::retract() {
    const std::string hidden = "." + name_;
    const int folder = folder_.descriptor();
    // Whoever finds it from here on sees that the name is gone.
    if (renameat(folder, name_.c_str(), folder, hidden.c_str()) != 0) return true;
    if (const std::int64_t last = std::exchange(foundAt_, modificationOf(descriptor_)); last == foundAt_) {
        unlinkat(folder, hidden.c_str(), 0);
        return true;
    }
    return renameat(folder, hidden.c_str(), folder, name_.c_str()) != 0;
}

std::optional<RunningServer::Found> RunningServer::find(const std::string& runtimeDirectory,
                                                        const std::string& rootDirectory) {
    const auto folder = RuntimeFolder::open(runtimeDirectory);
    if (!folder) return std::nullopt;
    for (const std::string& name : namesIn(*folder, prefixFor(rootDirectory))) {
        // Without O_NONBLOCK a pipe in the file's place would be waited for.
        const int file = openat(folder->descriptor(), name.c_str(),
                                O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY);
        if (file < 0) continue;
        const auto url = addressIn(*folder, name, file);
        close(file);
        if (url) return Found{folder->path() + "/" + name, *url};
    }
    return std::nullopt;
}

}  // namespace settings::server
