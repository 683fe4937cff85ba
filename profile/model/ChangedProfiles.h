// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "platform/foundation/Object.h"

namespace quietrix {

/// The records of one store that were changed since they were handed out. Each record reports itself at its
/// first change, so that the store need not look through all of them. Usable from any thread.
class ChangedProfiles {
  public:
    /// A record with the profile that it was handed out for.
    struct Entry {
        /// The identifier under which the record was handed out.
        std::string identifier;
        std::weak_ptr<platform::Object> record;
    };

    void add(Entry entry);
    /// Everything added since the last call.
    std::vector<Entry> take();

  private:
    std::mutex mutex_;
    std::vector<Entry> entries_;
};

}  // namespace quietrix
