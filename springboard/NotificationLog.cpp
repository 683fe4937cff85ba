// SPDX-License-Identifier: MIT
#include "springboard/NotificationLog.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <ctime>

#include "device/Descriptor.h"
#include "device/HostFile.h"
#include "device/UniversalTime.h"
#include "platform/foundation/LogSink.h"

namespace springboard {

namespace {

std::string line(std::chrono::system_clock::time_point time, std::string_view name) {
    const std::time_t moment = std::chrono::system_clock::to_time_t(time);
    return device::universalTimeText(moment, "%Y-%m-%dT%H:%M:%SZ ").append(name).append("\n");
}

/// Appending and never waiting, also where something other than a file is in the way.
device::Descriptor openFile(const std::string& path) {
    return device::Descriptor(open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_NONBLOCK | O_CLOEXEC,
                                   device::host::newFileMode));
}

}  // namespace

void NotificationLog::write(std::chrono::system_clock::time_point time, std::string_view name) {
    const std::string text = line(time, name);
    device::Descriptor file = openFile(path_);
    struct stat status{};
    if (file && fstat(file.get(), &status) == 0 && S_ISREG(status.st_mode) &&
        status.st_size + static_cast<long>(text.size()) > maximumSize) {
        putAside(file.get());
        file = openFile(path_);
    }
    if (!file || ::write(file.get(), text.data(), text.size()) != static_cast<ssize_t>(text.size()))
        platform::log("The notification log \"" + path_ + "\" could not be written: " + std::strerror(errno) +
                      ".");
}

void NotificationLog::putAside(int file) const {
    struct stat open{};
    struct stat present{};
    // Unless another process has just done it.
    if (fstat(file, &open) == 0 && stat(path_.c_str(), &present) == 0 && open.st_ino == present.st_ino &&
        open.st_dev == present.st_dev)
        std::rename(path_.c_str(), (path_ + ".old").c_str());
}

}  // namespace springboard
