// SPDX-License-Identifier: MIT
#include "profile/model/ProfileEdit.h"

#include <algorithm>
#include <unordered_set>

#include "profile/model/QXProfile.h"
#include "profile/model/QXProfileKeys.h"

namespace quietrix {

using platform::Array;
using platform::Dictionary;
using platform::Value;

namespace {

using TextList = std::vector<std::string>;

Array merged(const Array& present, const TextList& base, const Array& mine) {
    const auto isSame = [](const Value& a, const std::string& b) { return a.string() && *a.string() == b; };
    if (std::ranges::equal(present, base, isSame)) return mine;
    const std::unordered_set<std::string_view> before(base.begin(), base.end());
    std::unordered_set<std::string_view> wanted;
    for (const Value& element : mine) wanted.insert(*element.string());

    Array result;
    std::unordered_set<std::string_view> kept;
    for (const Value& element : present) {
        const std::string* text = element.string();
        if (text && before.contains(*text) && !wanted.contains(*text)) continue;
        if (text) kept.insert(*text);
        result.push_back(element);
    }
    for (const Value& element : mine) {
        const std::string& text = *element.string();
        if (!before.contains(text) && kept.insert(text).second) result.push_back(element);
    }
    return result;
}

}  // namespace

Dictionary ProfileEdit::appliedTo(const Dictionary& present) const {
    // Reads the file's values as every record does.
    QXProfile reader;
    Dictionary result;
    for (const QXProfileKey& key : profileKeys()) {
        if (!key.isStored()) continue;
        const auto theirs = present.find(key.name);
        const auto mine = values.find(key.name);
        const auto base = set.find(key.name);
        Value value;
        if (base != set.end()) {
            if (mine != values.end()) value = mine->second;
            const bool areLists = value.array() && theirs != present.end() && theirs->second.array();
            if (key.type == KeyType::TextList && areLists)
                value = merged(*theirs->second.array(), base->second, *value.array());
        } else if (theirs == present.end()) {
            value = key.defaultAsValue();
        } else {
            value = key.set(reader, theirs->second) ? key.get(reader) : theirs->second;
        }
        if (value) result.emplace(key.name, std::move(value));
    }
    return result;
}

}  // namespace quietrix
