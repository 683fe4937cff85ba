// SPDX-License-Identifier: MIT
#include "quietrix/FolderWatch.h"

#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <utility>

#include "platform/foundation/RunLoop.h"

namespace console {

namespace {

constexpr std::uint32_t changes = IN_CLOSE_WRITE | IN_MODIFY | IN_MOVED_TO | IN_MOVED_FROM | IN_CREATE |
                                  IN_DELETE | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;

}  // namespace

FolderWatch::FolderWatch(std::string directory, std::function<void()> changed)
    : directory_(std::move(directory)), events_(inotify_init1(IN_CLOEXEC | IN_NONBLOCK)) {
    if (!events_) return;
    platform::RunLoop::main().watch(events_.get(), [this, changed = std::move(changed)] {
        drain();
        changed();
    });
    renew();
}

FolderWatch::~FolderWatch() {
    if (events_) platform::RunLoop::main().unwatch(events_.get());
}

void FolderWatch::renew() {
    // One that is watched already stays so; the watch of one that has gone ended with it.
    if (events_) inotify_add_watch(events_.get(), directory_.c_str(), changes);
}

void FolderWatch::drain() const {
    // What happened is of no interest: whoever is told looks for himself.
    std::array<char, 4096> events{};
    while (read(events_.get(), events.data(), events.size()) > 0) continue;
}

}  // namespace console
