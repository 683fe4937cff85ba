// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "platform/foundation/Value.h"

namespace quietrix {

/// What a record hands over to the store: all its values, and which of them somebody set. Values that nobody
/// set are copies of what the file had once; another process may have changed them since. A copy of its own,
/// so usable from any thread.
struct ProfileEdit {
    /// The whole record, as QXProfile::storedValues() gives it.
    platform::Dictionary values;
    /// The keys of the file that were set since the record was made, by their names in the key table; for a
    /// list also what it was before, nothing for any other key.
    std::map<std::string_view, std::vector<std::string>> set;
    /// How often keys of the record had been set by then.
    std::uint64_t settings = 0;

    std::string identifier() const { return values.at("identifier").stringOr(); }

    /// The profile's values as they are to be stored, from those that the file has now. A key that was set
    /// takes the record's value, any other keeps the file's: in the key's own type where a record can read
    /// it, as it is where none can, and the default where the file has none. Keys that no record has are not
    /// among the result.
    ///
    /// Of a list that was set, what was added to the record is added at the end and what was taken away is
    /// taken away; the rest of the file's list stays in its order, elements that are no strings too. A file's
    /// list that is still the one that was changed becomes the record's.
    platform::Dictionary appliedTo(const platform::Dictionary& present) const;
};

}  // namespace quietrix
