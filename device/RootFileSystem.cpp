// SPDX-License-Identifier: MIT
#include "device/RootFileSystem.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <utility>

#include "device/FileReplacement.h"
#include "device/HostFile.h"
#include "device/HostStamp.h"
#include "device/InPlaceFile.h"
#include "device/PrivateLock.h"
#include "device/RootFileHistory.h"

namespace device {

namespace {

using platform::failure;
using platform::Result;

class HeldLock : public platform::FileLock {
  public:
    explicit HeldLock(PrivateLock lock) : lock_(std::move(lock)) {}

  private:
    PrivateLock lock_;
};

std::unexpected<platform::Error> failed(std::string_view path, const char* action,
                                        const std::string& reason) {
    return failure("The file \"" + std::string(path) + "\" could not be " + action + ": " + reason + ".");
}

std::unexpected<platform::Error> failed(std::string_view path, const char* action, int errorNumber) {
    return failed(path, action, host::message(errorNumber));
}

/// The host's answer as the phone's, with the phone's path in the sentence.
template <class T, class Reason>
Result<T> answer(std::expected<T, Reason> outcome, std::string_view path, const char* action) {
    if (!outcome) return failed(path, action, outcome.error());
    if constexpr (std::is_void_v<T>) {
        return {};
    } else {
        return std::move(*outcome);
    }
}

}  // namespace

RootFileSystem::RootFileSystem(const std::string& rootDirectory) {
    std::error_code ignored;  // only a missing working directory fails, and then lookups fail too
    root_ = std::filesystem::absolute(rootDirectory, ignored).lexically_normal().string();
    while (root_.ends_with('/')) root_.pop_back();
}

Result<std::string> RootFileSystem::resolve(std::string_view path) const {
    const std::string quoted = "The path \"" + std::string(path) + "\"";
    if (!path.starts_with('/')) return failure(quoted + " is not absolute.");
    if (path.contains('\0')) return failure(quoted + " holds a null character.");
    std::vector<std::string_view> pieces;
    while (!path.empty()) {
        const std::size_t slash = path.find('/');
        const std::string_view piece = path.substr(0, slash);
        path = slash == std::string_view::npos ? std::string_view() : path.substr(slash + 1);
        if (piece.empty() || piece == ".") continue;
        if (piece != "..") {
            pieces.push_back(piece);
        } else if (pieces.empty()) {
            return failure(quoted + " leads out of the phone.");
        } else {
            pieces.pop_back();
        }
    }
    std::string resolved = root_;
    for (const std::string_view piece : pieces) resolved.append("/").append(piece);
    return resolved.empty() ? "/" : resolved;
}

Result<platform::Data> RootFileSystem::read(std::string_view path) const {
    const Result<std::string> file = resolve(path);
    if (!file) return std::unexpected(file.error());
    return answer(host::readInPlace(*file), path, "read");
}

Result<void> RootFileSystem::write(std::string_view path, const platform::Data& data, platform::Write how) {
    const Result<std::string> file = resolve(path);
    if (!file) return std::unexpected(file.error());
    const bool atomically = how == platform::Write::Atomically;
    return answer(atomically ? host::replaceFile(*file, data) : host::writeInPlace(*file, data), path,
                  "written");
}

bool RootFileSystem::exists(std::string_view path) const {
    const auto found = stamp(path);
    return found && found->has_value();
}

bool RootFileSystem::isDirectory(std::string_view path) const {
    const Result<std::string> file = resolve(path);
    struct stat status{};
    return file && ::stat(file->c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

Result<std::optional<platform::FileStamp>> RootFileSystem::stamp(std::string_view path) const {
    const Result<std::string> file = resolve(path);
    if (!file) return std::unexpected(file.error());
    struct stat status{};
    if (::stat(file->c_str(), &status) != 0) {
        if (errno == ENOENT || errno == ENOTDIR) return std::nullopt;
        return failed(path, "looked at", errno);
    }
    return host::stampOf(status);
}

Result<void> RootFileSystem::remove(std::string_view path) {
    const Result<std::string> file = resolve(path);
    if (!file) return std::unexpected(file.error());
    if (*file == root_ || *file == "/") return failed(path, "removed", EBUSY);
    struct stat status{};
    if (lstat(file->c_str(), &status) != 0) return failed(path, "removed", errno);
    std::error_code error;
    std::filesystem::remove_all(*file, error);
    if (error) return failed(path, "removed", error.value());
    return {};
}

Result<void> RootFileSystem::createDirectory(std::string_view path) {
    const Result<std::string> directory = resolve(path);
    if (!directory) return std::unexpected(directory.error());
    return answer(host::createDirectories(*directory), path, "created");
}

Result<std::vector<std::string>> RootFileSystem::list(std::string_view path) const {
    const Result<std::string> directory = resolve(path);
    if (!directory) return std::unexpected(directory.error());
    const std::unique_ptr<DIR, int (*)(DIR*)> stream(opendir(directory->c_str()), closedir);
    if (!stream) return failed(path, "listed", errno);
    std::vector<std::string> names;
    errno = 0;
    while (const dirent* entry = readdir(stream.get())) {
        const std::string_view name = entry->d_name;
        if (name != "." && name != "..") names.emplace_back(name);
    }
    if (errno != 0) return failed(path, "listed", errno);
    std::ranges::sort(names);
    return names;
}

Result<std::unique_ptr<platform::FileLock>> RootFileSystem::lockExclusively(std::string_view path,
                                                                            double seconds) {
    const Result<std::string> file = resolve(path);
    if (!file) return std::unexpected(file.error());
    const auto target = host::followLinks(*file);
    if (!target) return failed(path, "locked", target.error());
    auto lock = PrivateLock::take(*target, seconds);
    if (!lock) return failed(path, "locked", lock.error());
    return std::make_unique<HeldLock>(*std::move(lock));
}

Result<std::unique_ptr<platform::FileHistory>> RootFileSystem::openHistory(std::string_view path,
                                                                           platform::Missing missing) {
    const Result<std::string> file = resolve(path);
    if (!file) return std::unexpected(file.error());
    return RootFileHistory::open(path, *file, missing);
}

std::string RootFileSystem::hostPath(std::string_view path) const {
    return resolve(path).value_or("");
}

}  // namespace device
