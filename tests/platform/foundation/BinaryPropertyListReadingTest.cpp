// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <bit>
#include <limits>

#include "platform/foundation/PropertyList.h"
#include "tests/doubles/Required.h"
#include "tests/platform/foundation/HandmadeList.h"

namespace {

using doubles::errorOf;
using doubles::required;
using platform::Array;
using platform::Data;
using platform::Date;
using platform::Dictionary;
using platform::PropertyListFormat;
using platform::PropertyListSerialization;
using platform::Result;
using platform::Value;
using platform::testing::HandmadeList;
using testing::HasSubstr;

Result<Value> read(const HandmadeList& list) {
    return PropertyListSerialization::propertyListWithData(list.build());
}
Result<Value> object(std::initializer_list<int> bytes) {
    return read(HandmadeList().object(bytes));
}

TEST(BinaryPropertyListReading, integersOfEveryWidth_areRead) {
    EXPECT_EQ(object({0x10, 0xFF}), Value(255));
    EXPECT_EQ(object({0x11, 0xFF, 0xFE}), Value(65534));
    EXPECT_EQ(object({0x12, 0xFF, 0xFF, 0xFF, 0xFF}), Value(4294967295U));
    EXPECT_EQ(object({0x13, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFE}), Value(-2));
    EXPECT_EQ(object({0x14, 0, 0, 0, 0, 0, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}),
              Value(std::numeric_limits<std::uint64_t>::max()));
    EXPECT_EQ(object({0x14, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x80, 0, 0, 0, 0, 0, 0, 0}),
              Value(std::numeric_limits<std::int64_t>::min()));
}

TEST(BinaryPropertyListReading, integersBeyond64Bits_areErrors) {
    EXPECT_THAT(errorOf(object({0x14, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0})),
                HasSubstr("byte 9: an integer of 16 bytes does not fit 8"));
    EXPECT_FALSE(object({0x14, 255, 255, 255, 255, 255, 255, 255, 255, 0, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_THAT(errorOf(object({0x15, 0})), HasSubstr("byte 8: the marker 0x15 is unknown"));
}

TEST(BinaryPropertyListReading, realsAndDates_areReadToTheBit) {
    EXPECT_EQ(object({0x22, 0x3F, 0xC0, 0, 0}), Value(1.5));
    EXPECT_EQ(object({0x23, 0x80, 0, 0, 0, 0, 0, 0, 0}), Value(-0.0));
    EXPECT_EQ(object({0x23, 0x7F, 0xF8, 0, 0, 0, 0, 0x12, 0x34}),
              Value(std::bit_cast<double>(0x7FF8000000001234U)));
    EXPECT_EQ(object({0x33, 0x3F, 0xF8, 0, 0, 0, 0, 0, 0}), Value(Date{1.5}));
}

TEST(BinaryPropertyListReading, stringsAndData_areRead) {
    EXPECT_EQ(object({0x52, 'h', 'i'}), Value("hi"));
    EXPECT_EQ(object({0x62, 0xD8, 0x3D, 0xDE, 0x00}), Value("😀"));
    EXPECT_EQ(object({0x5F, 0x11, 0x00, 0x02, 'h', 'i'}), Value("hi"));
    EXPECT_EQ(object({0x42, 0, 255}), Value(Data{0, 255}));
    EXPECT_EQ(object({0x40}), Value(Data{}));
}

TEST(BinaryPropertyListReading, stringsWithoutAUTF8Form_areErrors) {
    EXPECT_THAT(errorOf(object({0x61, 0xD8, 0x3D})),
                HasSubstr("byte 8: a string holds half a surrogate pair"));
    EXPECT_THAT(errorOf(object({0x52, 'h', 0xE9})),
                HasSubstr("byte 10: an ASCII string holds the byte 0xe9"));
}

TEST(BinaryPropertyListReading, UID_isADictionaryOfItsNumber) {
    EXPECT_EQ(object({0x80, 7}), Value(Dictionary{{"CF$UID", 7}}));
    EXPECT_EQ(object({0x81, 1, 0}), Value(Dictionary{{"CF$UID", 256}}));
    EXPECT_EQ(object({0x89, 0, 0, 0, 0, 0, 0, 0, 0, 0, 5}), Value(Dictionary{{"CF$UID", 5}}));
    EXPECT_THAT(errorOf(object({0x88, 1, 0, 0, 0, 0, 0, 0, 0, 0})), HasSubstr("a UID does not fit 8 bytes"));
}

TEST(BinaryPropertyListReading, foreignMarkers_areErrorsThatNameThemAndTheirOffset) {
    EXPECT_THAT(errorOf(object({0x00})), HasSubstr("byte 8: a null (marker 0x00)"));
    EXPECT_THAT(errorOf(object({0xC0})), HasSubstr("byte 8: a set (marker 0xc0)"));
    for (const int marker : {0x0F, 0x21, 0x24, 0x30, 0x70, 0x90, 0xB0, 0xE0, 0xF0}) {
        EXPECT_THAT(errorOf(object({marker, 0})), HasSubstr("at byte 8: the marker 0x")) << marker;
    }
}

TEST(BinaryPropertyListReading, offsetsAndReferencesOfEveryWidth_areRead) {
    for (std::size_t offsetWidth = 1; offsetWidth <= 8; ++offsetWidth) {
        for (std::size_t referenceWidth = 1; referenceWidth <= 8; ++referenceWidth) {
            HandmadeList list;
            list.offsetWidth = offsetWidth;
            list.referenceWidth = referenceWidth;
            list.dictionary({1, 2, 3, 4}).object({0x51, 'a'}).object({0x51, 'b'}).object({0x09}).array({3});
            EXPECT_EQ(read(list), Value(Dictionary{{"a", true}, {"b", Array{true}}}))
                << offsetWidth << " " << referenceWidth;
        }
    }
}

TEST(BinaryPropertyListReading, widthsOf0And9_areErrors) {
    for (const std::size_t width : {std::size_t{0}, std::size_t{9}}) {
        HandmadeList offsets;
        offsets.offsetWidth = width;
        EXPECT_THAT(errorOf(read(offsets.object({0x09}))), HasSubstr("the width of offsets is not 1 to 8"));
        HandmadeList references;
        references.referenceWidth = width;
        EXPECT_THAT(errorOf(read(references.object({0x09}))),
                    HasSubstr("the width of references is not 1 to 8"));
    }
}

TEST(BinaryPropertyListReading, rootNeedNotBeTheFirstObject) {
    HandmadeList list;
    list.root = 1;
    EXPECT_EQ(read(list.object({0x08}).object({0x09})), Value(true));
    list.root = 2;
    EXPECT_THAT(errorOf(read(list)), HasSubstr("the root is an object that does not exist"));
}

TEST(BinaryPropertyListReading, dictionaryKeyThatIsNoString_isAnError) {
    EXPECT_THAT(errorOf(read(HandmadeList().dictionary({1, 1}).object({0x10, 1}))),
                HasSubstr("byte 9: a dictionary's key is no string"));
}

TEST(BinaryPropertyListReading, keyThatComesTwice_takesItsLastValue) {
    EXPECT_EQ(read(HandmadeList().dictionary({1, 1, 2, 3}).object({0x51, 'a'}).object({0x08}).object({0x09})),
              Value(Dictionary{{"a", true}}));
}

TEST(BinaryPropertyListReading, hugeCounts_areErrorsWithoutBeingReserved) {
    for (const int marker : {0x4F, 0x5F, 0x6F, 0xAF, 0xDF}) {
        EXPECT_THAT(errorOf(object({marker, 0x13, 0x7F, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF})),
                    HasSubstr("items reaches beyond the file"));
        EXPECT_THAT(errorOf(object({marker, 0x13, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF})),
                    HasSubstr("a count is negative"));
        EXPECT_THAT(
            errorOf(object({marker, 0x14, 0, 0, 0, 0, 0, 0, 0, 0, 255, 255, 255, 255, 255, 255, 255, 255})),
            HasSubstr("items reaches beyond the file"));
        EXPECT_THAT(errorOf(object({marker, 0x51})), HasSubstr("a count is no integer"));
        EXPECT_THAT(errorOf(object({marker})), HasSubstr("a count is missing"));
    }
}

TEST(BinaryPropertyListReading, hugeObjectCount_isAnError) {
    Data data = HandmadeList().object({0x09}).build();
    for (std::size_t i = 0; i < 8; ++i) data[data.size() - 24 + i] = 0xFF;
    EXPECT_THAT(errorOf(PropertyListSerialization::propertyListWithData(data)),
                HasSubstr("the number of objects does not fit the offset table"));
}

TEST(BinaryPropertyListReading, referenceToAnObjectThatDoesNotExist_isAnError) {
    EXPECT_THAT(errorOf(read(HandmadeList().array({1}))),
                HasSubstr("byte 9: a reference names an object that does not exist"));
}

TEST(BinaryPropertyListReading, containersThatContainThemselves_areErrors) {
    EXPECT_THAT(errorOf(read(HandmadeList().array({0}))), HasSubstr("byte 8: a container contains itself"));
    EXPECT_THAT(errorOf(read(HandmadeList().array({1}).dictionary({2, 0}).object({0x51, 'a'}))),
                HasSubstr("a container contains itself"));
}

HandmadeList nested(std::size_t depth) {
    HandmadeList list;
    list.offsetWidth = 2;
    list.referenceWidth = 2;
    for (std::size_t i = 1; i < depth; ++i) list.array({i});
    return list.array({});
}

TEST(BinaryPropertyListReading, nesting_isAllowedUpToTheMaximumDepth) {
    EXPECT_TRUE(read(nested(PropertyListSerialization::maximumDepth)));
    EXPECT_THAT(errorOf(read(nested(PropertyListSerialization::maximumDepth + 1))),
                HasSubstr("containers nest more than 512 deep"));
    EXPECT_FALSE(read(nested(30000)));
}

TEST(BinaryPropertyListReading, sharedContainerReadFirstAtALowLevel_countsWhereItIsDeeper) {
    // The root holds a chain of 511 and, one further down, a path that ends in the same chain.
    HandmadeList list = nested(511);
    list.array({0});
    list.array({511});
    list.array({0, 512});
    list.root = 513;
    EXPECT_THAT(errorOf(read(list)), HasSubstr("containers nest more than 512 deep"));
}

TEST(BinaryPropertyListReading, sharedContainer_isMadeOnce) {
    const auto value = read(HandmadeList().array({1, 1}).array({2}).object({0x09}));
    ASSERT_TRUE(value);
    EXPECT_EQ(*value, Value(Array{Array{true}, Array{true}}));
    EXPECT_EQ(required(value->array())->at(0).array(), required(value->array())->at(1).array());
}

TEST(BinaryPropertyListReading, referencesThatUnfoldExponentially_areRefused) {
    HandmadeList list;
    list.offsetWidth = 2;
    for (std::uint64_t i = 1; i < 40; ++i) list.array({i, i, i, i, i, i, i, i, i, i});
    EXPECT_THAT(errorOf(read(list.object({0x09}))), HasSubstr("unfold to far more than the file holds"));
}

TEST(BinaryPropertyListReading, keySharedByManyDictionaries_isRefusedWhenItsCopiesWouldBeHuge) {
    HandmadeList list;
    list.offsetWidth = 4;
    list.referenceWidth = 4;
    Data key{0x5F, 0x12};
    HandmadeList::append(key, 200000, 4);
    key.insert(key.end(), 200000, 'k');
    constexpr std::uint64_t count = 20000;
    std::vector<std::uint64_t> all;
    for (std::uint64_t i = 0; i < count; ++i) all.push_back(i + 2);
    list.array(all).object(key);
    for (std::uint64_t i = 0; i < count; ++i) list.dictionary({1, 1});
    EXPECT_THAT(errorOf(read(list)), HasSubstr("far more than the file"));
}

TEST(BinaryPropertyListReading, objectsThatShareTheirBytes_areRefusedWhenTheirCopiesWouldBeHuge) {
    // Many entries of the offset table name the same data.
    constexpr std::size_t count = 50000;
    constexpr std::size_t size = 500000;
    Data data{'b', 'p', 'l', 'i', 's', 't', '0', '0', 0x4F, 0x12};
    HandmadeList::append(data, size, 4);
    data.insert(data.end(), size, 0);
    const std::size_t root = data.size();
    data.insert(data.end(), {0xAF, 0x12});
    HandmadeList::append(data, count, 4);
    for (std::size_t i = 1; i <= count; ++i) HandmadeList::append(data, i, 3);
    const std::size_t table = data.size();
    HandmadeList::append(data, root, 3);
    for (std::size_t i = 0; i < count; ++i) HandmadeList::append(data, 8, 3);
    data.insert(data.end(), {0, 0, 0, 0, 0, 0, 3, 3});
    HandmadeList::append(data, count + 1, 8);
    HandmadeList::append(data, 0, 8);
    HandmadeList::append(data, table, 8);
    EXPECT_THAT(errorOf(PropertyListSerialization::propertyListWithData(data)),
                HasSubstr("the objects share their bytes"));
}

Data wholeFile() {
    const Value value(Dictionary{
        {"array", Array{1, -1, 300, 70000, std::numeric_limits<std::uint64_t>::max(), 1.5, true, false}},
        {"data", Data(20, 7)},
        {"date", Date{123.25}},
        {"dictionary", Dictionary{{"a", Array{}}, {"b", "ä😀"}}},
        {"long", std::string(300, 'x')}});
    return *required(PropertyListSerialization::dataWithPropertyList(value, PropertyListFormat::Binary));
}

TEST(BinaryPropertyListReading, everyPrefixOfAFile_isAnError) {
    const Data whole = wholeFile();
    ASSERT_TRUE(PropertyListSerialization::propertyListWithData(whole));
    for (std::size_t length = 0; length < whole.size(); ++length) {
        const Data prefix(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
        EXPECT_FALSE(PropertyListSerialization::propertyListWithData(prefix)) << length;
    }
}

TEST(BinaryPropertyListReading, everyByteChanged_givesAnErrorOrAValueThatCanBeWritten) {
    const Data whole = wholeFile();
    int errors = 0;
    for (std::size_t i = 0; i < whole.size(); ++i) {
        for (int change = 1; change < 256; change = change * 2 + 1) {
            Data changed = whole;
            changed[i] = static_cast<std::uint8_t>(changed[i] ^ change);
            const auto value = PropertyListSerialization::propertyListWithData(changed);
            if (!value) {
                EXPECT_FALSE(errorOf(value).empty());
                ++errors;
                continue;
            }
            const auto again =
                PropertyListSerialization::dataWithPropertyList(*value, PropertyListFormat::Binary);
            ASSERT_TRUE(again) << i << " " << again.error().localizedDescription;
            EXPECT_EQ(PropertyListSerialization::propertyListWithData(*again), *value) << i;
        }
    }
    EXPECT_GT(errors, 100);
}

TEST(BinaryPropertyListReading, anotherVersion_isAnError) {
    Data data = HandmadeList().object({0x09}).build();
    data[6] = '1';
    EXPECT_THAT(errorOf(PropertyListSerialization::propertyListWithData(data)), HasSubstr("unknown version"));
}

}  // namespace
