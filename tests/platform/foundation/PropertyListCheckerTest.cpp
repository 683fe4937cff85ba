// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <limits>

#include "platform/foundation/Object.h"
#include "platform/foundation/PropertyListChecker.h"

namespace {

using platform::Array;
using platform::Date;
using platform::Dictionary;
using platform::Object;
using platform::PropertyListChecker;
using platform::PropertyListFormat;
using platform::PropertyListSerialization;
using platform::Value;

std::string problem(const Value& value, PropertyListFormat format = PropertyListFormat::Binary) {
    const auto checked = PropertyListChecker::check(value, format);
    return checked ? "" : checked.error().localizedDescription;
}

constexpr const char* start = "The property list cannot be written: ";

TEST(PropertyListChecker, nilAndObjects_areNamedByTheirKeyPath) {
    EXPECT_EQ(problem(Value()), start + std::string("the root is nil."));
    EXPECT_EQ(problem(Dictionary{{"profiles", Array{1, Dictionary{{"title", "a"}, {"x", nullptr}}}}}),
              start + std::string("\"profiles[1].x\" is nil."));
    EXPECT_EQ(problem(Array{1, std::make_shared<Object>()}),
              start + std::string("\"[1]\" is an object of the class \"Object\"."));
}

TEST(PropertyListChecker, stringsAndKeysThatAreNoUTF8_areErrors) {
    EXPECT_EQ(problem(Dictionary{{"ssid", "ab\xFF"}}),
              start + std::string("\"ssid\" is no UTF-8 from byte 2 on."));
    EXPECT_EQ(problem(Dictionary{{"a\xC3", 1}}),
              start + std::string("\"a\xC3\" has a key that is no UTF-8 from byte 1 on."));
}

TEST(PropertyListChecker, depth_isBounded) {
    Value value(Array{});
    for (int depth = 1; depth < PropertyListSerialization::maximumDepth; ++depth) value = Value(Array{value});
    for (const auto format : {PropertyListFormat::Binary, PropertyListFormat::XML}) {
        const auto written = PropertyListSerialization::dataWithPropertyList(value, format);
        ASSERT_TRUE(written);
        EXPECT_EQ(PropertyListSerialization::propertyListWithData(*written), value);
    }
    value = Value(Array{value});
    EXPECT_TRUE(problem(value).ends_with("is nested more than 512 deep."));
}

TEST(PropertyListChecker, whatOnlyBinaryListsHold_isRefusedForXML) {
    const double infinity = std::numeric_limits<double>::infinity();
    for (const Value& value :
         {Value("a\x01"), Value(std::string(1, '\0')), Value("\uFFFE"), Value(Date{infinity}),
          Value(Date{-1e12}), Value(Date{std::numeric_limits<double>::quiet_NaN()})}) {
        EXPECT_EQ(problem(value), "");
        EXPECT_NE(problem(value, PropertyListFormat::XML), "");
    }
    EXPECT_EQ(problem(Dictionary{{"a", "b\x01"}}, PropertyListFormat::XML),
              start + std::string("\"a\" holds at byte 1 what XML cannot hold."));
    EXPECT_EQ(problem("tab\t and line breaks \r\n", PropertyListFormat::XML), "");
}

}  // namespace
