// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "platform/foundation/FileSystem.h"
#include "platform/foundation/StringTable.h"

namespace platform {

/// The string tables read so far. Bundles are made anew at each use, so that what they read would be read
/// again for each text shown; here a table is read again only when its file has changed. Main thread only.
class StringTableCache {
  public:
    static StringTableCache& shared();

    /// The table at the phone's path; empty when there is no such file or it is damaged. Damage is logged
    /// once for each state of the file. While the file cannot be looked at, the table that was read stays.
    std::shared_ptr<const StringTable> tableAtPath(const std::string& path);

  private:
    struct Entry {
        std::weak_ptr<FileSystem> files;  // another device's file system has other files at the same path
        FileStamp stamp;
        std::shared_ptr<const StringTable> table;
    };
    std::map<std::string, Entry, std::less<>> entries_;
};

}  // namespace platform
