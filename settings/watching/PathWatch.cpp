// SPDX-License-Identifier: MIT
#include "settings/watching/PathWatch.h"

#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <utility>

#include "platform/foundation/LogSink.h"
#include "platform/foundation/RunLoop.h"

namespace settings {

namespace fs = std::filesystem;
using platform::Result;
using platform::RunLoop;

namespace {

constexpr std::uint32_t notedChanges = IN_CLOSE_WRITE | IN_MODIFY | IN_CREATE | IN_DELETE | IN_MOVED_FROM |
                                       IN_MOVED_TO | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR |
                                       IN_EXCL_UNLINK;
constexpr std::uint32_t endsOfFolder =
    IN_DELETE_SELF | IN_MOVE_SELF | IN_UNMOUNT | IN_IGNORED | IN_Q_OVERFLOW;

bool isDirectory(const std::string& path) {
    std::error_code error;
    return fs::is_directory(path, error);
}

}  // namespace

Result<std::unique_ptr<PathWatch>> PathWatch::create(Changed changed, Ignored ignored) {
    device::Descriptor notices(inotify_init1(IN_CLOEXEC | IN_NONBLOCK));
    if (!notices)
        return platform::failure("Files cannot be watched: " + std::string(std::strerror(errno)) + ".");
    return std::unique_ptr<PathWatch>(
        new PathWatch(std::move(notices), std::move(changed), std::move(ignored)));
}

PathWatch::PathWatch(device::Descriptor notices, Changed changed, Ignored ignored)
    : notices_(std::move(notices)), changed_(std::move(changed)), ignored_(std::move(ignored)) {
    RunLoop::main().watch(notices_.get(), [this] { readNotices(); });
}

PathWatch::~PathWatch() {
    RunLoop::main().unwatch(notices_.get());
}

void PathWatch::setPlaces(std::vector<std::string> trees, std::vector<std::string> files) {
    trees_ = std::move(trees);
    files_ = std::move(files);
    refresh();
}

void PathWatch::refresh() {
    mustRefresh_ = false;
    Folders folders;
    for (const std::string& tree : trees_) {
        addName(tree, folders);
        addTree(tree, folders);
    }
    for (const std::string& file : files_) addName(file, folders);

    std::map<int, Folder> watched;
    for (auto& [path, folder] : folders) {
        // A directory that has gone meanwhile is told of by the one around it.
        const int watch = inotify_add_watch(notices_.get(), path.c_str(), notedChanges);
        if (watch < 0 && errno == ENOSPC && !std::exchange(hasComplained_, true))
            platform::log("Not all files are watched: the system's limit of inotify watches is reached.");
        if (watch < 0) continue;
        // One that is reached by two paths has one watch.
        const auto [entry, isNew] = watched.try_emplace(watch, folder);
        if (isNew) continue;
        entry->second.isWhole |= folder.isWhole;
        entry->second.names.merge(folder.names);
    }
    for (const auto& [watch, folder] : watched_) {
        if (!watched.contains(watch)) inotify_rm_watch(notices_.get(), watch);
    }
    watched_ = std::move(watched);
}

void PathWatch::addTree(const std::string& path, Folders& folders) const {
    if (!isDirectory(path)) return;
    Folder& folder = folders[path];
    folder.path = path;
    folder.isWhole = true;
    std::error_code error;
    for (auto entry = fs::directory_iterator(path, error); !error && entry != fs::directory_iterator();
         entry.increment(error)) {
        std::error_code unknown;
        if (entry->is_directory(unknown) && !entry->is_symlink(unknown) && !isIgnored(entry->path().string()))
            addTree(entry->path().string(), folders);
    }
}

/// By its name in the directory around it, or where that is not there, by that one's, and so on.
void PathWatch::addName(const std::string& path, Folders& folders) {
    const fs::path whole(path);
    const std::string around = whole.parent_path().string();
    if (around.empty() || around == path) return;
    Folder& folder = folders[around];
    folder.path = around;
    folder.names.insert(whole.filename().string());
    if (isDirectory(around)) return;
    folders.erase(around);
    addName(around, folders);
}

void PathWatch::readNotices() {
    alignas(inotify_event) std::array<char, 16384> bytes{};
    for (;;) {
        const ssize_t count = read(notices_.get(), bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) break;
        for (std::size_t at = 0; at < static_cast<std::size_t>(count);) {
            const auto& notice = *reinterpret_cast<const inotify_event*>(bytes.data() + at);
            at += sizeof notice + notice.len;
            handle(notice, notice.len > 0 ? std::string_view(notice.name) : std::string_view());
        }
    }
    if (mustRefresh_) refresh();
}

void PathWatch::handle(const inotify_event& notice, std::string_view name) {
    if ((notice.mask & endsOfFolder) != 0) {
        mustRefresh_ = true;
        // What a removed watch says last is no change of anything.
        if ((notice.mask & IN_IGNORED) == 0) changed_("", Writing::Done);
        return;
    }
    const auto found = watched_.find(notice.wd);
    if (found == watched_.end() || name.empty()) return;
    const Folder& folder = found->second;
    if (!folder.isWhole && !folder.names.contains(name)) return;
    std::string path = folder.path;
    if (!path.ends_with('/')) path += '/';
    path += name;
    if (!folder.names.contains(name) && isIgnored(path)) return;
    const bool comesOrGoes = (notice.mask & (IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO)) != 0;
    // A link may lead to another directory than before.
    if (comesOrGoes && ((notice.mask & IN_ISDIR) != 0 || folder.names.contains(name))) mustRefresh_ = true;
    changed_(path, writingOf(notice, path));
}

Writing PathWatch::writingOf(const inotify_event& notice, const std::string& path) const {
    if ((notice.mask & IN_ISDIR) != 0) return Writing::Done;
    if ((notice.mask & IN_MODIFY) != 0) return Writing::Begun;
    if ((notice.mask & IN_CREATE) == 0) return Writing::Done;
    // Links are made and not written, and so is whatever is no file.
    struct stat facts{};
    const bool isNewFile = lstat(path.c_str(), &facts) == 0 && S_ISREG(facts.st_mode) && facts.st_nlink == 1;
    return isNewFile ? Writing::Begun : Writing::Done;
}

}  // namespace settings
