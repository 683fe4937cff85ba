// SPDX-License-Identifier: MIT
#include "quietrix/ProfileDifference.h"

#include <boost/json/array.hpp>

#include "device/EscapedText.h"
#include "profile/model/QXProfileKeys.h"
#include "quietrix/JSONText.h"
#include "quietrix/ProfileText.h"

namespace console {

std::vector<ValueChange> differenceBetween(const platform::Dictionary& before,
                                           const platform::Dictionary& after) {
    const auto valueIn = [](const platform::Dictionary& values, std::string_view key) {
        const auto found = values.find(key);
        return found == values.end() ? platform::Value() : found->second;
    };
    std::vector<ValueChange> changes;
    for (const quietrix::QXProfileKey& key : quietrix::profileKeys()) {
        if (!key.isStored()) continue;
        platform::Value old = valueIn(before, key.name);
        platform::Value now = valueIn(after, key.name);
        if (old != now) changes.push_back({std::string(key.name), std::move(old), std::move(now)});
    }
    return changes;
}

boost::json::object jsonOfChanges(const std::vector<ValueChange>& changes) {
    boost::json::object object;
    for (const ValueChange& change : changes)
        object[change.key] = boost::json::array{jsonOf(change.before), jsonOf(change.after)};
    return object;
}

std::string changesInWords(const std::vector<ValueChange>& changes) {
    std::string text;
    for (const ValueChange& change : changes) {
        text += (text.empty() ? "" : ", ") + change.key + " " + valueInWords(change.key, change.before) +
                " → " + valueInWords(change.key, change.after);
    }
    return device::visibleText(text);
}

}  // namespace console
