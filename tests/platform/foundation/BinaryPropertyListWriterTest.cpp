// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <bit>
#include <limits>

#include "platform/foundation/BinaryPropertyListWriter.h"
#include "platform/foundation/PropertyList.h"
#include "tests/platform/foundation/HandmadeList.h"

namespace {

using platform::Array;
using platform::BinaryPropertyListWriter;
using platform::Data;
using platform::Date;
using platform::Dictionary;
using platform::PropertyListSerialization;
using platform::Value;
using platform::testing::HandmadeList;

Value throughBytes(const Value& value) {
    const auto read = PropertyListSerialization::propertyListWithData(BinaryPropertyListWriter::write(value));
    EXPECT_TRUE(read) << (read ? "" : read.error().localizedDescription);
    return read.value_or(Value());
}

std::size_t offsetWidth(const Data& list) {
    return list[list.size() - 26];
}
std::size_t referenceWidth(const Data& list) {
    return list[list.size() - 25];
}

TEST(BinaryPropertyListWriter, aSmallDictionary_isThisFile) {
    EXPECT_EQ(BinaryPropertyListWriter::write(Dictionary{{"com.velmora.quietrix.enabled", false}}),
              HandmadeList()
                  .dictionary({1, 2})
                  .object({0x5F, 0x10, 28,  'c', 'o', 'm', '.', 'v', 'e', 'l', 'm', 'o', 'r', 'a', '.', 'q',
                           'u',  'i',  'e', 't', 'r', 'i', 'x', '.', 'e', 'n', 'a', 'b', 'l', 'e', 'd'})
                  .object({0x08})
                  .build());
}

TEST(BinaryPropertyListWriter, integers_takeTheirSmallestWidth) {
    const auto written = [](const Value& value) { return BinaryPropertyListWriter::write(value)[8]; };
    EXPECT_EQ(written(0), 0x10);
    EXPECT_EQ(written(255), 0x10);
    EXPECT_EQ(written(256), 0x11);
    EXPECT_EQ(written(65536), 0x12);
    EXPECT_EQ(written(1 << 24), 0x12);
    EXPECT_EQ(written(std::int64_t{1} << 32), 0x13);
    EXPECT_EQ(written(-1), 0x13);
    EXPECT_EQ(written(std::numeric_limits<std::int64_t>::max()), 0x13);
    EXPECT_EQ(written(std::uint64_t{1} << 63), 0x14);
}

TEST(BinaryPropertyListWriter, scalars_comeBackToTheBit) {
    for (int shift = 0; shift < 64; ++shift) {
        const std::uint64_t power = std::uint64_t{1} << shift;
        for (const std::uint64_t number : {power - 1, power, power + 1, ~power}) {
            EXPECT_EQ(throughBytes(number), Value(number));
            EXPECT_EQ(throughBytes(static_cast<std::int64_t>(number)),
                      Value(static_cast<std::int64_t>(number)));
            EXPECT_EQ(throughBytes(std::bit_cast<double>(number)), Value(std::bit_cast<double>(number)));
            EXPECT_EQ(throughBytes(Date{std::bit_cast<double>(number)}),
                      Value(Date{std::bit_cast<double>(number)}));
        }
    }
    EXPECT_EQ(throughBytes(-0.0), Value(-0.0));
    EXPECT_EQ(throughBytes(true), Value(true));
}

TEST(BinaryPropertyListWriter, stringsAndDataOfEveryLengthOfCount_comeBack) {
    for (const std::size_t length : {0U, 1U, 14U, 15U, 16U, 255U, 256U, 65535U, 65536U, 70000U}) {
        EXPECT_EQ(throughBytes(std::string(length, 'x')), Value(std::string(length, 'x')));
        EXPECT_EQ(throughBytes(Data(length, 9)), Value(Data(length, 9)));
        std::string text;
        for (std::size_t i = 0; i < length; ++i) text += i % 2 == 0 ? "ä" : "😀";
        EXPECT_EQ(throughBytes(text), Value(text));
    }
    EXPECT_EQ(throughBytes(std::string("a\0b", 3)), Value(std::string("a\0b", 3)));
}

TEST(BinaryPropertyListWriter, equalScalars_areStoredOnce) {
    const std::string text(1000, 'x');
    const Data list = BinaryPropertyListWriter::write(Array{text, std::string(text), Dictionary{{text, text}},
                                                            Data(1000, 1), Data(1000, 1), 1, 1, 2.5, 2.5});
    EXPECT_LT(list.size(), 2200U);
}

TEST(BinaryPropertyListWriter, scalarsOfDifferentTypes_areNeverTakenForEachOther) {
    const Value value(Array{1, 1.0, true, Date{1.0}, "1", Data{'1'}, 0, 0.0, -0.0, false,
                            std::uint64_t{1} << 63, std::numeric_limits<std::int64_t>::min(), "", Data{},
                            Array{}, Dictionary{}});
    EXPECT_EQ(throughBytes(value), value);
}

TEST(BinaryPropertyListWriter, widths_areTheSmallestThatSuffice) {
    const auto listOf = [](std::size_t objects, std::size_t padding) {
        Array array{Data(padding, 0)};
        for (std::size_t i = 2; i < objects; ++i) array.push_back(i);
        return BinaryPropertyListWriter::write(array);
    };
    EXPECT_EQ(referenceWidth(listOf(256, 0)), 1U);
    EXPECT_EQ(referenceWidth(listOf(257, 0)), 2U);
    EXPECT_EQ(referenceWidth(listOf(65536, 0)), 2U);
    EXPECT_EQ(referenceWidth(listOf(65537, 0)), 3U);
    EXPECT_EQ(offsetWidth(listOf(3, 0)), 1U);
    EXPECT_EQ(offsetWidth(listOf(3, 300)), 2U);
    EXPECT_EQ(offsetWidth(listOf(3, 66000)), 3U);
    EXPECT_EQ(offsetWidth(listOf(3, 17000000)), 4U);
}

TEST(BinaryPropertyListWriter, equalValues_giveEqualBytes) {
    const auto make = [] {
        return Value(Dictionary{{"b", Array{1, "x", 1}}, {"a", Dictionary{{"x", 2.5}}}});
    };
    EXPECT_EQ(BinaryPropertyListWriter::write(make()), BinaryPropertyListWriter::write(make()));
}

TEST(BinaryPropertyListWriter, manyRecords_comeBack) {
    Array records;
    for (int i = 0; i < 20000; ++i) {
        records.push_back(Dictionary{{"identifier", "id-" + std::to_string(i)},
                                     {"volume", 0.5 + i},
                                     {"enabled", i % 2 == 0},
                                     {"networks", Array{"home", "work " + std::to_string(i % 7)}}});
    }
    const Value value(Dictionary{{"format", 1}, {"profiles", std::move(records)}});
    EXPECT_EQ(throughBytes(value), value);
}

}  // namespace
