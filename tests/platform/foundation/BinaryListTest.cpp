// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>

#include "platform/foundation/BinaryList.h"
#include "platform/foundation/BinaryListBuilder.h"
#include "platform/foundation/PropertyList.h"
#include "tests/doubles/Required.h"
#include "tests/platform/foundation/HandmadeList.h"

namespace {

using doubles::errorOf;
using doubles::required;
using platform::Array;
using platform::BinaryList;
using platform::BinaryListBuilder;
using platform::Data;
using platform::Dictionary;
using platform::PropertyListFormat;
using platform::PropertyListSerialization;
using platform::Value;
using platform::testing::HandmadeList;
using testing::HasSubstr;

Data encoded(const Value& value) {
    return PropertyListSerialization::dataWithPropertyList(value, PropertyListFormat::Binary).value();
}

Value everything() {
    return Dictionary{
        {"yes", true},
        {"no", false},
        {"integers", Array{0, 255, 256, 65535, 65536, -1, INT64_MIN, INT64_MAX, UINT64_MAX}},
        {"reals", Array{0.0, -0.0, 1.5, 1e300}},
        {"date", platform::Date{-12.25}},
        {"data", Data(300, 7)},
        {"texts", Array{"", "plain", std::string(40, 'x'), "Büro", "日本", "🔕 off", "\xED\x9F\xBF"}},
        {"empty", Array{Array{}, Dictionary{}}},
        {"nested", Dictionary{{"a", Dictionary{{"b", Array{Array{1}}}}}}}};
}

std::string reasonAgainst(const Data& bytes) {
    const auto list = BinaryList::create(bytes);
    return list ? "none" : list.error().localizedDescription;
}
std::string reasonAgainst(const HandmadeList& list) {
    return reasonAgainst(list.build());
}
HandmadeList object(std::initializer_list<int> bytes) {
    return HandmadeList().object(bytes);
}

TEST(BinaryList, everyKindOfValue_isReadAsThePlatformReadsIt) {
    const auto list = BinaryList::create(encoded(everything()));
    ASSERT_TRUE(list) << list.error().localizedDescription;
    EXPECT_EQ(everything(), list->value(list->root()));
    EXPECT_EQ(list->bytes().size(), list->reachableBytes() + 8 + 32);
}

TEST(BinaryList, widthsAndSizesOfOtherWriters_areRead) {
    // A real of four bytes, a UID, a size in eight bytes, an integer of sixteen.
    const Data bytes = HandmadeList()
                           .array({1, 2, 3, 4})
                           .object({0x22, 0x3F, 0xC0, 0, 0})
                           .object({0x81, 1, 2})
                           .object({0x5F, 0x13, 0, 0, 0, 0, 0, 0, 0, 2, 'o', 'k'})
                           .object({0x14, 0, 0, 0, 0, 0, 0, 0, 0, 0xFF, 0, 0, 0, 0, 0, 0, 0})
                           .build();
    const auto list = BinaryList::create(bytes);
    ASSERT_TRUE(list) << list.error().localizedDescription;
    EXPECT_EQ(Value(Array{1.5, Dictionary{{"CF$UID", 258}}, "ok", std::uint64_t{0xFF} << 56}),
              list->value(0));
    EXPECT_EQ(PropertyListSerialization::propertyListWithData(bytes).value(), list->value(0));
}

TEST(BinaryList, look_upsAnswerForTheirKindOnly) {
    const auto list = BinaryList::create(encoded(Dictionary{{"a", Array{1, 2}}, {"ü", "x"}})).value();
    const auto array = list.find(list.root(), "a");
    ASSERT_TRUE(array);
    EXPECT_EQ(2U, list.elements(*array).size());
    EXPECT_TRUE(list.pairs(*array).empty());
    EXPECT_TRUE(list.elements(list.root()).empty());
    EXPECT_EQ(std::nullopt, list.string(*array));
    EXPECT_EQ(std::nullopt, list.find(*array, "a"));
    EXPECT_EQ(std::nullopt, list.find(list.root(), "b"));
    EXPECT_EQ("x", list.string(list.find(list.root(), "ü").value()));
}

TEST(BinaryList, hostileBytes_areRefusedWithTheirPlace) {
    EXPECT_EQ("The binary property list is damaged at byte 8: a container contains itself.",
              reasonAgainst(HandmadeList().array({0})));
    EXPECT_THAT(reasonAgainst(HandmadeList().array({1}).array({0})), HasSubstr("contains itself"));
    EXPECT_THAT(reasonAgainst(HandmadeList().array({9})), HasSubstr("at byte 9: a reference"));
    EXPECT_THAT(reasonAgainst(HandmadeList().dictionary({1, 1}).object({0x10, 5})),
                HasSubstr("at byte 9: a dictionary's key"));
    EXPECT_THAT(reasonAgainst(object({0xC0})), HasSubstr("at byte 8: a set"));
    EXPECT_THAT(reasonAgainst(object({0x5F, 0x13, 0x7F, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF})),
                HasSubstr("at byte 8: an object of 9223372036854775807 items reaches beyond"));
    EXPECT_THAT(reasonAgainst(object({0x51, 0xC3})), HasSubstr("at byte 9: an ASCII string"));
    EXPECT_THAT(reasonAgainst(object({0x62, 0xDC, 0x00, 0xD8, 0x00})),
                HasSubstr("at byte 8: a string holds"));
    EXPECT_THAT(reasonAgainst(object({0x14, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0})),
                HasSubstr("at byte 9: an integer of 16 bytes"));
}

TEST(BinaryList, objectOutsideTheFile_isRefusedWithThePlaceOfItsOffset) {
    Data bytes = object({0x09}).build();
    const std::size_t table = bytes.size() - 33;
    bytes[table] = static_cast<std::uint8_t>(table);
    EXPECT_EQ("The binary property list is damaged at byte 9: an object lies outside the file.",
              reasonAgainst(bytes));
}

TEST(BinaryList, objectsCutOff_areRefused) {
    EXPECT_THAT(reasonAgainst(object({0x13, 0})), HasSubstr("at byte 8: an integer is cut off"));
    EXPECT_THAT(reasonAgainst(object({0x23, 0})), HasSubstr("at byte 8: a real is cut off"));
    EXPECT_THAT(reasonAgainst(object({0x33, 0})), HasSubstr("at byte 8: a date is cut off"));
    EXPECT_THAT(reasonAgainst(object({0x83, 0})), HasSubstr("at byte 8: a UID is cut off"));
    EXPECT_THAT(reasonAgainst(object({0x5F, 0x13, 0})), HasSubstr("an integer that counts is cut off"));
    EXPECT_EQ("The binary property list is too short to be one: it has only 39 bytes.",
              reasonAgainst(Data(39)));
}

TEST(BinaryList, sharedObjects_areMadeOnceForTheRoot) {
    const auto list =
        BinaryList::create(HandmadeList().array({1, 1, 2, 2}).array({2}).object({0x51, 'a'}).build()).value();
    const Value root = list.rootValue();
    EXPECT_EQ(list.value(list.root()), root);
    const Array& elements = *required(root.array());
    EXPECT_EQ(elements.at(0).array(), elements.at(1).array());
    EXPECT_EQ(elements.at(2).string(), elements.at(3).string());
}

TEST(BinaryList, objectsOnTopOfEachOther_areRefused) {
    // An array of 200 objects, all of which are the same 3000 bytes of data.
    constexpr int count = 200;
    BinaryListBuilder builder;
    const auto data = builder.add(Data(3000, 1)).value();
    std::vector<BinaryList::Object> elements{data};
    for (int i = 1; i < count; ++i) elements.push_back(builder.add(i).value());
    Data bytes = std::move(builder).finish(builder.addArray(elements)).value();
    const BinaryList list = BinaryList::trusted(bytes);
    for (std::size_t i = 1; i < count; ++i) {
        std::copy_n(bytes.begin() + static_cast<std::ptrdiff_t>(list.tableStart()), 4,
                    bytes.begin() + static_cast<std::ptrdiff_t>(list.tableStart() + 4 * i));
    }
    EXPECT_THAT(reasonAgainst(bytes), HasSubstr("share their bytes"));
}

TEST(BinaryList, everyPrefixAndEveryFlippedByte_givesAnErrorOrAValue) {
    const Data whole = encoded(everything());
    const auto look = [](Data bytes) {
        const auto list = BinaryList::create(std::move(bytes));
        if (!list) return false;
        EXPECT_FALSE(list->value(list->root()).isNil());
        return true;
    };
    for (std::size_t size = 0; size < whole.size(); ++size) {
        EXPECT_FALSE(look(Data(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)))) << size;
    }
    int accepted = 0;
    for (std::size_t at = 8; at < whole.size(); ++at) {
        for (const std::uint8_t flip : std::to_array<std::uint8_t>({0x01, 0x10, 0x80, 0xFF})) {
            Data changed = whole;
            changed[at] ^= flip;
            accepted += look(std::move(changed)) ? 1 : 0;
        }
    }
    EXPECT_GT(accepted, 0);
}

TEST(BinaryListBuilder, copy_isTheSameValueAndSharesWhatWasShared) {
    const BinaryList source = BinaryList::create(encoded(everything())).value();
    BinaryListBuilder builder;
    BinaryListBuilder::Copies copies(source);
    const auto first = builder.copy(source.root(), copies);
    const auto second = builder.copy(source.root(), copies);
    EXPECT_EQ(first, second);
    const auto root = builder.addArray(std::vector{first, second});
    const auto list = BinaryList::create(std::move(builder).finish(root).value());
    ASSERT_TRUE(list) << list.error().localizedDescription;
    EXPECT_EQ(Value(Array{everything(), everything()}), list->value(list->root()));
    EXPECT_EQ(source.count() + 1, list->count());
}

TEST(BinaryListBuilder, continuedList_keepsItsObjects) {
    BinaryListBuilder first;
    const auto text = first.add("text").value();
    const auto array = first.addArray(std::vector{text});
    const BinaryList list = BinaryList::create(std::move(first).finish(array).value()).value();
    ASSERT_TRUE(BinaryListBuilder::continuable(list));
    BinaryListBuilder second(list, 1);
    const auto more = second.add(everything()).value();
    const auto longer =
        BinaryList::create(std::move(second).finish(second.addArray(std::vector{text, more})).value());
    ASSERT_TRUE(longer) << longer.error().localizedDescription;
    EXPECT_EQ(Value(Array{"text", everything()}), longer->value(longer->root()));
}

TEST(BinaryListBuilder, value_isAddedBehindWhatItHoldsWithEqualScalarsOnce) {
    BinaryListBuilder builder;
    const auto root = builder.add(Dictionary{{"a", 1}, {"b", Array{1, "a"}}}).value();
    HandmadeList expected;
    expected.offsetWidth = expected.referenceWidth = 4;
    expected.root = 4;
    expected.object({0x51, 'a'}).object({0x10, 1}).object({0x51, 'b'}).array({1, 0}).dictionary({0, 2, 1, 3});
    EXPECT_EQ(expected.build(), std::move(builder).finish(root).value());
}

TEST(BinaryListBuilder, longContainer_saysItsSizeInFourBytes) {
    BinaryListBuilder builder;
    const auto root = builder.add(Array(15, true)).value();
    HandmadeList expected;
    expected.offsetWidth = expected.referenceWidth = 4;
    expected.root = 1;
    expected.object({0x09}).array(std::vector<std::uint64_t>(15, 0));
    EXPECT_EQ(expected.build(), std::move(builder).finish(root).value());
}

TEST(BinaryListBuilder, elements_areAddedWithoutTheirArrayAndShareTheirScalars) {
    BinaryListBuilder builder;
    const auto elements = builder.addElements(Array{"x", Array{"x"}, "x"}).value();
    EXPECT_EQ((std::vector<BinaryList::Object>{0, 1, 0}), elements);
    const auto list = BinaryList::trusted(std::move(builder).finish(1).value());
    EXPECT_EQ(2U, list.count());
    EXPECT_EQ(Value(Array{"x"}), list.rootValue());
}

TEST(BinaryListBuilder, valueThatNoListHolds_isAnError) {
    BinaryListBuilder builder;
    EXPECT_FALSE(builder.add(Value()));
    EXPECT_THAT(errorOf(builder.addElements(Array{1, Value()})), HasSubstr("\"[1]\" is nil"));
}

}  // namespace
