// SPDX-License-Identifier: MIT
#include "tests/doubles/MemoryFileSystem.h"

#include <chrono>
#include <utility>

#include "platform/foundation/Calendar.h"

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

class MemoryFileSystem::History : public platform::FileHistory {
  public:
    History(MemoryFileSystem& files, std::string path) : files_(files), path_(std::move(path)) {}

    Result<std::vector<std::string>> names() const override {
        const auto states = look();
        std::vector<std::string> names;
        for (const auto& [name, file] : *states) names.push_back(name);
        return names;
    }
    Result<platform::FileStamp> stamp(const std::string& name) const override {
        const auto states = look();
        const auto found = states->find(name);
        if (found == states->end()) return failed(name, "looked at", noSuchFile);
        return found->second->stamp;
    }
    Result<platform::Data> read(const std::string& name) const override {
        const auto states = look();
        const auto found = states->find(name);
        if (found == states->end()) return failed(name, "read", noSuchFile);
        return found->second->data;
    }
    Result<Kept> keep(const std::string& name) override {
        const auto states = look();
        if (!files_.historyFailure_.empty())
            return failed(path_, "kept in its history", files_.historyFailure_);
        const auto file = files_.files_.find(path_);
        if (file == files_.files_.end()) return failed(path_, "kept in its history", noSuchFile);
        if (!states->try_emplace(name, file->second).second) return Kept::NameIsTaken;
        ++file->second->stamp.changedNanoseconds;
        return Kept::Yes;
    }
    Result<Kept> mark(const std::string& name) override {
        const auto states = look();
        if (!files_.historyFailure_.empty())
            return failed(path_, "kept in its history", files_.historyFailure_);
        return states->try_emplace(name, files_.makeFile({})).second ? Kept::Yes : Kept::NameIsTaken;
    }
    Result<void> remove(const std::string& name) override {
        const auto states = look();
        if (states->erase(name) == 0) return failed(name, "removed", noSuchFile);
        return {};
    }

  private:
    using States = std::map<std::string, std::shared_ptr<File>>;
    /// The states, and the lock for as long as they are looked at.
    class Look {
      public:
        Look(MemoryFileSystem& files, const std::string& path)
            : lock_(files.mutex_), states_(files.histories_[path]) {
            ++files.historyAccesses_;
        }
        States* operator->() const { return &states_; }
        States& operator*() const { return states_; }

      private:
        std::lock_guard<std::mutex> lock_;
        States& states_;
    };
    Look look() const { return {files_, path_}; }

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

void MemoryFileSystem::failHistories(std::string reason) {
    const std::lock_guard lock(mutex_);
    historyFailure_ = std::move(reason);
}

int MemoryFileSystem::historyAccesses() const {
    const std::lock_guard lock(mutex_);
    return historyAccesses_;
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
    files_[path] = makeFile(std::move(data));
}

std::shared_ptr<MemoryFileSystem::File> MemoryFileSystem::makeFile(platform::Data data) {
    constexpr double referenceInUnixTime = 978307200.0;
    const double seconds = platform::dateNow().secondsSinceReference + referenceInUnixTime;
    // No two states have the same time.
    const auto time =
        static_cast<std::int64_t>(seconds) * 1'000'000'000 + static_cast<std::int64_t>(++revision_);
    const platform::FileStamp stamp{1, revision_, static_cast<std::int64_t>(data.size()), time, time};
    return std::make_shared<File>(File{std::move(data), stamp});
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
    return file->second->data;
}

Result<void> MemoryFileSystem::write(std::string_view path, const platform::Data& data, platform::Write how) {
    const std::lock_guard lock(mutex_);
    const std::string name(path);
    ++writes_[name];
    if (const std::string reason = writeFailure_.reason(name); !reason.empty())
        return failed(name, "written", reason);
    if (hasDirectory(name)) return failed(name, "written", "Is a directory");
    const auto old = files_.find(name);
    if (how == platform::Write::InPlace && old != files_.end()) {
        // It stays the same file, whatever other names it has.
        const auto written = makeFile(data);
        written->stamp.inode = old->second->stamp.inode;
        *old->second = *written;
    } else {
        store(name, data);
    }
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
    return file->second->stamp;
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

Result<std::unique_ptr<platform::FileHistory>> MemoryFileSystem::openHistory(std::string_view path,
                                                                             platform::Missing missing) {
    const std::lock_guard lock(mutex_);
    ++historyAccesses_;
    const std::string name(path);
    if (!histories_.contains(name)) {
        if (missing == platform::Missing::Leave) return nullptr;
        if (!historyFailure_.empty()) return failed(name, "kept in its history", historyFailure_);
        histories_.try_emplace(name);
    }
    return std::make_unique<History>(*this, name);
}

}  // namespace doubles
