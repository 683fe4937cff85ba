// SPDX-License-Identifier: MIT
#pragma once

#include <condition_variable>
#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <string>

#include "platform/foundation/FileSystem.h"

namespace doubles {

/// A file system that lives in memory, and fails when it is told to. Directories exist once something is in
/// them or they were created. Usable from any thread.
class MemoryFileSystem : public platform::FileSystem {
  public:
    /// From now on the operation fails with this reason on every path, or on the given one; an empty reason
    /// lets it succeed again. The error reads like a real file system's: «The file "…" could not be read:
    /// REASON.»
    void failReads(std::string reason, std::string path = {});
    void failWrites(std::string reason, std::string path = {});
    void failRemovals(std::string reason, std::string path = {});
    void failStamps(std::string reason, std::string path = {});
    /// Locks fail as if their time were over.
    void failLocks(bool fail);

    /// How often each file was read or written, successfully or not.
    int reads(const std::string& path) const;
    int writes(const std::string& path) const;
    /// How often each file was looked at for its stamp.
    int stamps(const std::string& path) const;
    /// Puts a file there without counting, as another process would.
    void put(const std::string& path, platform::Data data);
    void put(const std::string& path, std::string_view text);

    platform::Result<platform::Data> read(std::string_view path) const override;
    platform::Result<void> write(std::string_view path, const platform::Data& data,
                                 platform::Write how) override;
    bool exists(std::string_view path) const override;
    bool isDirectory(std::string_view path) const override;
    platform::Result<std::optional<platform::FileStamp>> stamp(std::string_view path) const override;
    platform::Result<void> remove(std::string_view path) override;
    platform::Result<void> createDirectory(std::string_view path) override;
    platform::Result<std::vector<std::string>> list(std::string_view path) const override;
    platform::Result<std::unique_ptr<platform::FileLock>> lockExclusively(std::string_view path,
                                                                          double seconds) override;
    std::string hostPath(std::string_view path) const override { return std::string(path); }

  private:
    class HeldLock;
    struct File {
        platform::Data data;
        platform::FileStamp stamp;
    };
    struct Failure {
        std::string everywhere;
        std::map<std::string, std::string> byPath;

        void set(std::string reason, std::string path);
        std::string reason(const std::string& path) const;
    };

    void store(const std::string& path, platform::Data data);
    bool hasDirectory(const std::string& path) const;

    mutable std::mutex mutex_;
    std::condition_variable unlocked_;
    std::map<std::string, File> files_;
    std::set<std::string> directories_{"/"};
    std::set<std::string> locks_;
    mutable std::map<std::string, int> reads_;
    mutable std::map<std::string, int> stamps_;
    std::map<std::string, int> writes_;
    Failure readFailure_;
    Failure writeFailure_;
    Failure removalFailure_;
    Failure stampFailure_;
    bool locksFail_ = false;
    std::uint64_t revision_ = 0;
};

}  // namespace doubles
