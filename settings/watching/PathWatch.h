// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "device/Descriptor.h"
#include "platform/foundation/Error.h"

struct inotify_event;

namespace settings {

/// Whether a file is being written or is as whoever wrote it has left it.
enum class Writing { Begun, Done };

/// Tells of every change of files and of whole directories, also of those that are not there yet or go and
/// come again. Host paths. Main thread.
class PathWatch {
  public:
    using Changed = std::function<void(const std::string& path, Writing writing)>;
    /// Of what lies below a directory, what does not count.
    using Ignored = std::function<bool(const std::string& path)>;

    /// The error says that the system can watch no more.
    static platform::Result<std::unique_ptr<PathWatch>> create(Changed changed, Ignored ignored = {});
    ~PathWatch();
    PathWatch(const PathWatch&) = delete;
    PathWatch& operator=(const PathWatch&) = delete;

    /// These are watched from now on: everything below the trees, and the files. Absolute paths.
    void setPlaces(std::vector<std::string> trees, std::vector<std::string> files);

  private:
    /// A directory of which all names count, or only some.
    struct Folder {
        std::string path;
        bool isWhole = false;
        std::set<std::string, std::less<>> names;
    };
    using Folders = std::map<std::string, Folder>;

    PathWatch(device::Descriptor notices, Changed changed, Ignored ignored);
    void refresh();
    void addTree(const std::string& path, Folders& folders) const;
    static void addName(const std::string& path, Folders& folders);
    void readNotices();
    void handle(const inotify_event& notice, std::string_view name);
    Writing writingOf(const inotify_event& notice, const std::string& path) const;
    bool isIgnored(const std::string& path) const { return ignored_ && ignored_(path); }

    device::Descriptor notices_;
    Changed changed_;
    Ignored ignored_;
    std::vector<std::string> trees_;
    std::vector<std::string> files_;
    std::map<int, Folder> watched_;
    bool mustRefresh_ = false;
    bool hasComplained_ = false;
};

}  // namespace settings
