// SPDX-License-Identifier: MIT
#include "platform/foundation/StringTableCache.h"

#include <utility>

#include "platform/foundation/Device.h"
#include "platform/foundation/FileManager.h"
#include "platform/foundation/LogSink.h"

namespace platform {

StringTableCache& StringTableCache::shared() {
    static StringTableCache cache;
    return cache;
}

std::shared_ptr<const StringTable> StringTableCache::tableAtPath(const std::string& path) {
    const FileManager& manager = FileManager::defaultManager();
    const std::shared_ptr<FileSystem> files = Device::current().files;
    // Taken before the file is read: a change in between then shows as another stamp next time.
    const auto stamp = manager.stampAtPath(path);
    if (stamp && !*stamp) {
        entries_.erase(path);
        return nullptr;
    }
    const auto known = entries_.find(path);
    const bool isKnown = known != entries_.end() && known->second.files.lock() == files;
    if (!stamp) return isKnown ? known->second.table : nullptr;
    if (isKnown && known->second.stamp == **stamp) return known->second.table;

    std::shared_ptr<const StringTable> table;
    const Result<Data> data = manager.contentsAtPath(path);
    Result<StringTable> parsed = data ? parseStringTable(*data) : std::unexpected(data.error());
    if (parsed) {
        table = std::make_shared<const StringTable>(*std::move(parsed));
    } else {
        log("The string table \"" + path + "\" cannot be read: " + parsed.error().localizedDescription);
    }
    entries_.insert_or_assign(path, Entry{files, **stamp, table});
    return table;
}

}  // namespace platform
