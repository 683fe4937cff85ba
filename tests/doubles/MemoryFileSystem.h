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
/// them or they were created. Files have the time of the phone's clock. Usable from any thread.
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

    /// Nothing more can be kept in a history.
    void failHistories(std::string reason);
    /// How often anything of a history was looked at, or changed.
    int historyAccesses() const;

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
    platform::Result<std::unique_ptr<platform::FileHistory>> openHistory(std::string_view path,
                                                                         platform::Missing missing) override;
    std::string hostPath(std::string_view path) const override { return std::string(path); }

  private:
    class HeldLock;
    class History;
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

    std::shared_ptr<File> makeFile(platform::Data data);
    void store(const std::string& path, platform::Data data);
    bool hasDirectory(const std::string& path) const;

    mutable std::mutex mutex_;
    std::condition_variable unlocked_;
    /// A file has as many names as there are pointers to it.
    std::map<std::string, std::shared_ptr<File>> files_;
    /// By the path of the file that they are of.
    std::map<std::string, std::map<std::string, std::shared_ptr<File>>> histories_;
    std::set<std::string> directories_{"/"};
    std::set<std::string> locks_;
    mutable std::map<std::string, int> reads_;
    mutable std::map<std::string, int> stamps_;
    std::map<std::string, int> writes_;
    Failure readFailure_;
    Failure writeFailure_;
    Failure removalFailure_;
    Failure stampFailure_;
    std::string historyFailure_;
    int historyAccesses_ = 0;
    bool locksFail_ = false;
    std::uint64_t revision_ = 0;
};

}  // namespace doubles
