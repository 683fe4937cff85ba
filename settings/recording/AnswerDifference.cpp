// SPDX-License-Identifier: MIT
#include "settings/recording/AnswerDifference.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/foundation/Unicode.h"
#include "settings/channels/JSON.h"

namespace settings {

using platform::Array;
using platform::Dictionary;
using platform::Value;

namespace {

constexpr std::size_t longestText = 200;
constexpr const char* nothing = "nothing";

std::string shortText(const Value& value) {
    std::string text = jsonText(value);
    if (text.size() <= longestText) return text;
    std::size_t length = longestText;
    // Not in the middle of a character.
    while (platform::firstInvalidUTF8(std::string_view(text).substr(0, length))) --length;
    return text.substr(0, length) + "…";
}

bool comesLate(const std::string& key) {
    constexpr std::array<std::string_view, 3> late{"droppedEvents", "events", "revision"};
    return std::ranges::find(late, key) != late.end();
}

std::vector<std::string> keysOf(const Dictionary& was, const Dictionary& is) {
    std::vector<std::string> keys;
    for (const Dictionary& each : {was, is}) {
        for (const auto& [key, value] : each) keys.push_back(key);
    }
    std::ranges::sort(keys, {}, [](const std::string& key) { return std::pair(comesLate(key), key); });
    keys.erase(std::unique(keys.begin(), keys.end()), keys.end());
    return keys;
}

std::optional<AnswerDifference> difference(const std::string& path, const Value& was, const Value& is);

std::optional<AnswerDifference> differenceOfObjects(const std::string& path, const Dictionary& was,
                                                    const Dictionary& is) {
    for (const std::string& key : keysOf(was, is)) {
        const auto before = was.find(key);
        const auto after = is.find(key);
        const std::string inner = path.empty() ? key : path + "." + key;
        if (before == was.end()) return AnswerDifference{inner, nothing, shortText(after->second)};
        if (after == is.end()) return AnswerDifference{inner, shortText(before->second), nothing};
        if (auto found = difference(inner, before->second, after->second)) return found;
    }
    return std::nullopt;
}

std::optional<AnswerDifference> differenceOfLists(const std::string& path, const Array& was,
                                                  const Array& is) {
    for (std::size_t i = 0; i < std::max(was.size(), is.size()); ++i) {
        const std::string inner = path + "[" + std::to_string(i) + "]";
        if (i >= was.size()) return AnswerDifference{inner, nothing, shortText(is[i])};
        if (i >= is.size()) return AnswerDifference{inner, shortText(was[i]), nothing};
        if (auto found = difference(inner, was[i], is[i])) return found;
    }
    return std::nullopt;
}

std::optional<AnswerDifference> difference(const std::string& path, const Value& was, const Value& is) {
    if (was.dictionary() && is.dictionary())
        return differenceOfObjects(path, *was.dictionary(), *is.dictionary());
    if (was.array() && is.array()) return differenceOfLists(path, *was.array(), *is.array());
    // As they are written: 1 and 1.0 are one answer, 1 and true are not.
    if (jsonText(was) == jsonText(is)) return std::nullopt;
    return AnswerDifference{path, shortText(was), shortText(is)};
}

}  // namespace

std::optional<AnswerDifference> firstDifference(const Value& was, const Value& is) {
    return difference("", was, is);
}

}  // namespace settings
