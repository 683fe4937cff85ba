// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <map>
#include <random>
#include <stdexcept>

#include "platform/foundation/PropertyList.h"
#include "platform/foundation/Value.h"
#include "tests/doubles/Required.h"

namespace {

using doubles::required;
using platform::Array;
using platform::Dictionary;
using platform::PropertyListFormat;
using platform::PropertyListSerialization;
using platform::Value;

std::vector<std::string> keysOf(const Dictionary& dictionary) {
    std::vector<std::string> keys;
    for (const auto& [key, value] : dictionary) keys.push_back(key);
    return keys;
}

TEST(Dictionary, entries_areInTheOrderOfTheKeysBytes) {
    const Dictionary dictionary{{"b", 1}, {"\xC3\xA4", 2}, {"", 3}, {"a", 4}};
    EXPECT_EQ(keysOf(dictionary), (std::vector<std::string>{"", "a", "b", "\xC3\xA4"}));
    EXPECT_EQ(dictionary.begin()->second, Value(3));
    EXPECT_EQ((*--dictionary.end()).second, Value(2));
}

TEST(Dictionary, keyThatComesTwice_takesTheFirstOfAListAndTheLastOfMany) {
    EXPECT_EQ((Dictionary{{"a", 1}, {"a", 2}}), (Dictionary{{"a", 1}}));
    EXPECT_EQ(Dictionary::ofEntries({{"b", 0}, {"a", 1}, {"b", 2}, {"a", 3}}),
              (Dictionary{{"a", 3}, {"b", 2}}));
}

TEST(Dictionary, randomChanges_giveWhatAMapGives) {
    std::mt19937 random(7);
    Dictionary dictionary;
    std::map<std::string, Value, std::less<>> expected;
    for (int step = 0; step < 4000; ++step) {
        const std::string key = std::to_string(random() % 60);
        const Value value(step);
        switch (random() % 6) {
            case 0:
                EXPECT_EQ(dictionary.emplace(key, value).second, expected.emplace(key, value).second);
                break;
            case 1:
                EXPECT_EQ(dictionary.erase(key), expected.erase(key));
                break;
            case 2:
                EXPECT_EQ(dictionary[key], expected[key]);
                break;
            case 3:
                if (const auto found = dictionary.find(key); found != dictionary.end()) {
                    const auto next = dictionary.erase(found);
                    const auto expectedNext = expected.erase(expected.find(key));
                    ASSERT_EQ(next == dictionary.end(), expectedNext == expected.end());
                    if (expectedNext != expected.end()) {
                        EXPECT_EQ(next->first, expectedNext->first);
                    }
                }
                break;
            default: {
                const auto [entry, isNew] = dictionary.insert_or_assign(key, value);
                EXPECT_EQ(isNew, expected.insert_or_assign(key, value).second);
                EXPECT_EQ(entry->first, key);
                EXPECT_EQ(entry->second, value);
            }
        }
        ASSERT_EQ(dictionary.size(), expected.size());
        EXPECT_EQ(dictionary.contains(key), expected.contains(key));
    }
    auto entry = expected.begin();
    for (const auto& [key, value] : dictionary) {
        EXPECT_EQ(key, entry->first);
        EXPECT_EQ(value, (entry++)->second);
    }
}

TEST(Dictionary, missingKey_isFoundNowhere) {
    const Dictionary dictionary{{"b", 1}};
    for (const char* const key : {"a", "bb", "c"}) {
        EXPECT_EQ(dictionary.find(key), dictionary.end());
        EXPECT_THROW((void)dictionary.at(key), std::out_of_range);
    }
    EXPECT_EQ(Dictionary().find("a"), Dictionary().end());
    EXPECT_EQ(dictionary.at("b"), Value(1));
}

TEST(Dictionary, changedCopy_leavesWhatItWasCopiedFrom) {
    const Dictionary original{{"a", 1}, {"c", 3}};
    Dictionary copy = original;
    EXPECT_EQ(copy.keys().get(), original.keys().get());
    copy.insert_or_assign("b", 2);
    copy.erase("a");
    copy.at("c") = 4;
    EXPECT_EQ(original, (Dictionary{{"a", 1}, {"c", 3}}));
    EXPECT_EQ(copy, (Dictionary{{"b", 2}, {"c", 4}}));
}

TEST(Dictionary, merge_keepsWhatIsThere) {
    Dictionary dictionary{{"a", 1}, {"c", 3}};
    dictionary.merge(Dictionary{{"a", 9}, {"b", 2}});
    EXPECT_EQ(dictionary, (Dictionary{{"a", 1}, {"b", 2}, {"c", 3}}));
}

TEST(Dictionary, dictionariesOfOneBinaryList_shareTheirKeys) {
    const Value records(
        Array{Dictionary{{"a", 1}, {"b", 2}}, Dictionary{{"a", 3}, {"b", 4}}, Dictionary{{"a", 5}}});
    const auto bytes = PropertyListSerialization::dataWithPropertyList(records, PropertyListFormat::Binary);
    const Value read = PropertyListSerialization::propertyListWithData(*bytes).value();
    EXPECT_EQ(read, records);
    const Array& elements = *required(read.array());
    EXPECT_EQ(required(elements.at(0).dictionary())->keys().get(),
              required(elements.at(1).dictionary())->keys().get());
    EXPECT_NE(required(elements.at(0).dictionary())->keys().get(),
              required(elements.at(2).dictionary())->keys().get());
}

}  // namespace
