// SPDX-License-Identifier: MIT
#include "tests/doubles/MemoryFileSystem.h"

#include <chrono>
#include <utility>

namespace doubles {

using platform::failure;
using platform::Result;

namespace {

std::unexpected<platform::Error> failed(const std::string& path, const char* action,
                                        const std::string& reason) {
    return failure("The file \"" + path + "\" could not be " + action + ": " + reason + ".");
}

constexpr const char* noSuchFile = "No such file or directory";

}  // namespace

class MemoryFileSystem::HeldLock : public platform::FileLock {
  public:
    HeldLock(MemoryFileSystem& files, std::string path) : files_(files), path_(std::move(path)) {}
    ~HeldLock() override {
        const std::lock_guard lock(files_.mutex_);
        files_.locks_.erase(path_);
        files_.unlocked_.notify_all();
    }

  private:
    MemoryFileSystem& files_;
    std::string path_;
};

void MemoryFileSystem::Failure::set(std::string reason, std::string path) {
    if (path.empty()) {
        everywhere = std::move(reason);
        if (everywhere.empty()) byPath.clear();
    } else {
        byPath[std::move(path)] = std::move(reason);
    }
}

std::string MemoryFileSystem::Failure::reason(const std::string& path) const {
    const auto own = byPath.find(path);
    return own == byPath.end() || own->second.empty() ? everywhere : own->second;
}

void MemoryFileSystem::failReads(std::string reason, std::string path) {
    const std::lock_guard lock(mutex_);
    readFailure_.set(std::move(reason), std::move(path));
}

void MemoryFileSystem::failWrites(std::string reason, std::string path) {
    const std::lock_guard lock(mutex_);
    writeFailure_.set(std::move(reason), std::move(path));
}

void MemoryFileSystem::failRemovals(std::string reason, std::string path) {
    const std::lock_guard lock(mutex_);
    removalFailure_.set(std::move(reason), std::move(path));
}

void MemoryFileSystem::failStamps(std::string reason, std::string path) {
    const std::lock_guard lock(mutex_);
    stampFailure_.set(std::move(reason), std::move(path));
}

void MemoryFileSystem::failLocks(bool fail) {
    const std::lock_guard lock(mutex_);
    locksFail_ = fail;
}

int MemoryFileSystem::reads(const std::string& path) const {
    const std::lock_guard lock(mutex_);
    return reads_[path];
}

int MemoryFileSystem::writes(const std::string& path) const {
    const std::lock_guard lock(mutex_);
    const auto found = writes_.find(path);
    return found == writes_.end() ? 0 : found->second;
}

int MemoryFileSystem::stamps(const std::string& path) const {
    const std::lock_guard lock(mutex_);
    return stamps_[path];
}

void MemoryFileSystem::put(const std::string& path, platform::Data data) {
    const std::lock_guard lock(mutex_);
    store(path, std::move(data));
}

void MemoryFileSystem::put(const std::string& path, std::string_view text) {
    put(path, platform::Data(text.begin(), text.end()));
}

void MemoryFileSystem::store(const std::string& path, platform::Data data) {
    for (std::size_t slash = path.find('/', 1); slash != std::string::npos;
         slash = path.find('/', slash + 1)) {
        directories_.insert(path.substr(0, slash));
    }
    File& file = files_[path];
    ++revision_;
    file.stamp = {1, revision_, static_cast<std::int64_t>(data.size()), static_cast<std::int64_t>(revision_),
                  static_cast<std::int64_t>(revision_)};
    file.data = std::move(data);
}

bool MemoryFileSystem::hasDirectory(const std::string& path) const {
    return directories_.contains(path);
}

Result<platform::Data> MemoryFileSystem::read(std::string_view path) const {
    const std::lock_guard lock(mutex_);
    const std::string name(path);
    ++reads_[name];
    if (const std::string reason = readFailure_.reason(name); !reason.empty())
        return failed(name, "read", reason);
    const auto file = files_.find(name);
    if (file == files_.end()) return failed(name, "read", hasDirectory(name) ? "Is a directory" : noSuchFile);
    return file->second.data;
}

Result<void> MemoryFileSystem::write(std::string_view path, const platform::Data& data, platform::Write how) {
    const std::lock_guard lock(mutex_);
    const std::string name(path);
    ++writes_[name];
    if (const std::string reason = writeFailure_.reason(name); !reason.empty())
        return failed(name, "written", reason);
    if (hasDirectory(name)) return failed(name, "written", "Is a directory");
    const auto old = files_.find(name);
    const auto inode = old == files_.end() ? revision_ + 1 : old->second.stamp.inode;
    store(name, data);
    // A file that is written in place stays the same file.
    if (how == platform::Write::InPlace) files_[name].stamp.inode = inode;
    return {};
}

bool MemoryFileSystem::exists(std::string_view path) const {
    const std::lock_guard lock(mutex_);
    return files_.contains(std::string(path)) || hasDirectory(std::string(path));
}

bool MemoryFileSystem::isDirectory(std::string_view path) const {
    const std::lock_guard lock(mutex_);
    return hasDirectory(std::string(path));
}

Result<std::optional<platform::FileStamp>> MemoryFileSystem::stamp(std::string_view path) const {
    const std::lock_guard lock(mutex_);
    const std::string name(path);
    ++stamps_[name];
    if (const std::string reason = stampFailure_.reason(name); !reason.empty())
        return failed(name, "looked at", reason);
    const auto file = files_.find(name);
    if (file == files_.end()) return std::nullopt;
    return file->second.stamp;
}

Result<void> MemoryFileSystem::remove(std::string_view path) {
    const std::lock_guard lock(mutex_);
    const std::string name(path);
    if (const std::string reason = removalFailure_.reason(name); !reason.empty()) {
        return failed(name, "removed", reason);
    }
    const bool wasDirectory = directories_.erase(name) > 0;
    if (wasDirectory) {
        std::erase_if(files_, [&](const auto& entry) { return entry.first.starts_with(name + "/"); });
        std::erase_if(directories_, [&](const std::string& other) { return other.starts_with(name + "/"); });
    }
    if (files_.erase(name) == 0 && !wasDirectory) return failed(name, "removed", noSuchFile);
    return {};
}

Result<void> MemoryFileSystem::createDirectory(std::string_view path) {
    const std::lock_guard lock(mutex_);
    const std::string name(path);
    if (files_.contains(name)) return failed(name, "created", "File exists");
    for (std::size_t slash = name.find('/', 1);; slash = name.find('/', slash + 1)) {
        directories_.insert(name.substr(0, slash));
        if (slash == std::string::npos) return {};
    }
}

Result<std::vector<std::string>> MemoryFileSystem::list(std::string_view path) const {
    const std::lock_guard lock(mutex_);
    const std::string name(path);
    if (!hasDirectory(name)) return failed(name, "listed", noSuchFile);
    const std::string prefix = name.ends_with('/') ? name : name + "/";
    std::set<std::string> names;
    const auto add = [&](const std::string& entry) {
        if (entry.size() <= prefix.size() || !entry.starts_with(prefix)) return;
        names.insert(entry.substr(prefix.size(), entry.find('/', prefix.size()) - prefix.size()));
    };
    for (const auto& [file, content] : files_) add(file);
    for (const std::string& directory : directories_) add(directory);
    return std::vector<std::string>(names.begin(), names.end());
}

Result<std::unique_ptr<platform::FileLock>> MemoryFileSystem::lockExclusively(std::string_view path,
                                                                              double seconds) {
    std::unique_lock lock(mutex_);
    const std::string name(path);
    const auto time = std::chrono::duration<double>(seconds);
    if (locksFail_ || !unlocked_.wait_for(lock, time, [&] { return !locks_.contains(name); })) {
        return failure("The file \"" + name + "\" could not be locked: it is in use.");
    }
    locks_.insert(name);
    return std::make_unique<HeldLock>(*this, name);
}

}  // namespace doubles
