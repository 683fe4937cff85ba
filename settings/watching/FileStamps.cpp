// SPDX-License-Identifier: MIT
#include "settings/watching/FileStamps.h"

#include <sys/stat.h>

#include <filesystem>
#include <system_error>

namespace settings {

namespace fs = std::filesystem;

namespace {

void add(const std::string& path, HostStamps& stamps) {
    struct stat facts{};
    if (stat(path.c_str(), &facts) != 0 || !S_ISREG(facts.st_mode)) return;
    stamps[path] = {facts.st_dev, facts.st_ino, static_cast<std::uint64_t>(facts.st_size),
                    facts.st_mtim.tv_sec, facts.st_mtim.tv_nsec};
}

}  // namespace

HostStamps stampsOf(const std::vector<std::string>& paths) {
    HostStamps stamps;
    for (const std::string& path : paths) {
        add(path, stamps);
        std::error_code error;
        // Whatever goes meanwhile ends the walk; it is walked again when that was told.
        for (auto entry = fs::recursive_directory_iterator(path, error);
             !error && entry != fs::recursive_directory_iterator(); entry.increment(error))
            add(entry->path().string(), stamps);
    }
    return stamps;
}

}  // namespace settings
