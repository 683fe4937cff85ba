// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>

#include "platform/foundation/Object.h"
#include "platform/foundation/Value.h"

namespace {

using platform::Array;
using platform::Data;
using platform::Date;
using platform::Dictionary;
using platform::Object;
using platform::Value;

TEST(Value, boolean_isNeverAnInteger) {
    EXPECT_NE(Value(true), Value(1));
    EXPECT_FALSE(Value(true).integer());
    EXPECT_FALSE(Value(true).unsignedInteger());
    EXPECT_FALSE(Value(1).boolean());
    EXPECT_EQ(Value(true).type(), Value::Type::Boolean);
}

TEST(Value, failedComparison_isToldInWords) {
    EXPECT_EQ("nil", testing::PrintToString(Value()));
    EXPECT_EQ("true", testing::PrintToString(Value(true)));
    EXPECT_EQ("1", testing::PrintToString(Value(1)));
    EXPECT_EQ("real 1", testing::PrintToString(Value(1.0)));
    EXPECT_EQ("\"1\"", testing::PrintToString(Value("1")));
    EXPECT_EQ("<00 ff>", testing::PrintToString(Value(Data{0, 255})));
    EXPECT_EQ(R"({"key" = (false, "text"); "other" = nil})",
              testing::PrintToString(Value(Dictionary{{"key", Array{false, "text"}}, {"other", Value()}})));
    EXPECT_EQ("date 2001-01-01 00:00:00 +0000", testing::PrintToString(Value(Date{})));
}

TEST(Value, nullPointers_areNil) {
    EXPECT_TRUE(Value(static_cast<const char*>(nullptr)).isNil());
    EXPECT_TRUE(Value(nullptr).isNil());
    EXPECT_TRUE(Value(std::shared_ptr<Object>()).isNil());
    EXPECT_FALSE(Value());
    EXPECT_TRUE(Value(false));
}

TEST(Value, equalIntegersOfDifferentWidths_areEqual) {
    EXPECT_EQ(Value(std::uint64_t{7}), Value(std::int8_t{7}));
    EXPECT_EQ(Value(std::uint64_t{7}).integer(), 7);
}

TEST(Value, integersAboveTheSignedRange_areKeptAsUnsigned) {
    const Value large(std::numeric_limits<std::uint64_t>::max());
    EXPECT_EQ(large.type(), Value::Type::Integer);
    EXPECT_FALSE(large.integer());
    EXPECT_EQ(large.unsignedInteger(), std::numeric_limits<std::uint64_t>::max());
    EXPECT_TRUE(large.isTrue());
    EXPECT_EQ(large.number(), 18446744073709551616.0);
    EXPECT_NE(large, Value(-1));
    EXPECT_FALSE(Value(-1).unsignedInteger());
}

TEST(Value, isTrue_readsBoxedNumbersOnly) {
    EXPECT_TRUE(Value(true).isTrue());
    EXPECT_TRUE(Value(-3).isTrue());
    EXPECT_TRUE(Value(0.1).isTrue());
    EXPECT_FALSE(Value(false).isTrue());
    EXPECT_FALSE(Value(0).isTrue());
    EXPECT_FALSE(Value(0.0).isTrue());
    EXPECT_FALSE(Value("1").isTrue());
    EXPECT_FALSE(Value().isTrue());
}

TEST(Value, number_readsBoxedNumbersOnly) {
    EXPECT_EQ(Value(true).number(), 1.0);
    EXPECT_EQ(Value(-3).number(), -3.0);
    EXPECT_EQ(Value(0.5).number(), 0.5);
    EXPECT_FALSE(Value("0.5").number());
    EXPECT_FALSE(Value().number());
}

TEST(Value, accessorsOfAnotherType_answerNothing) {
    const Value text("text");
    EXPECT_FALSE(text.boolean());
    EXPECT_FALSE(text.real());
    EXPECT_FALSE(text.date());
    EXPECT_EQ(text.data(), nullptr);
    EXPECT_EQ(text.array(), nullptr);
    EXPECT_EQ(text.dictionary(), nullptr);
    EXPECT_EQ(text.object(), nullptr);
    EXPECT_EQ(Value(1).string(), nullptr);
    EXPECT_FALSE(Value(1).real());
    EXPECT_EQ(Value(1).stringOr("other"), "other");
    EXPECT_EQ(text.stringOr("other"), "text");
}

TEST(Value, subscript_givesNilForWhatIsNotThere) {
    const Value value(Dictionary{{"a", 1}});
    EXPECT_EQ(value["a"], Value(1));
    EXPECT_TRUE(value["b"].isNil());
    EXPECT_TRUE(Value(1)["a"].isNil());
}

TEST(Value, reals_areComparedByTheirBits) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double otherNaN = std::bit_cast<double>(std::bit_cast<std::uint64_t>(nan) | 1);
    EXPECT_EQ(Value(nan), Value(nan));
    EXPECT_NE(Value(nan), Value(otherNaN));
    EXPECT_NE(Value(0.0), Value(-0.0));
    EXPECT_NE(Value(1.0), Value(1));
    EXPECT_EQ(Value(Date{nan}), Value(Date{nan}));
}

TEST(Value, containers_areComparedDeeply) {
    EXPECT_EQ(Value(Array{1, "a", Dictionary{{"k", Data{1}}}}),
              Value(Array{1, "a", Dictionary{{"k", Data{1}}}}));
    EXPECT_NE(Value(Array{1, "a"}), Value(Array{1, "b"}));
    EXPECT_NE(Value(Dictionary{{"k", 1}}), Value(Dictionary{{"l", 1}}));
    EXPECT_NE(Value(Array{}), Value(Dictionary{}));
}

TEST(Value, objects_areComparedByIdentity) {
    const auto one = std::make_shared<Object>();
    const auto other = std::make_shared<Object>();
    EXPECT_EQ(Value(one), Value(one));
    EXPECT_NE(Value(one), Value(other));
    EXPECT_EQ(Value(one).objectAs<Object>(), one);
}

TEST(Value, copies_shareTheirContainer) {
    const Value value(Array{1, 2, 3});
    const Value copy = value;  // NOLINT(performance-unnecessary-copy-initialization): the copy is the subject
    EXPECT_EQ(value.array(), copy.array());
}

TEST(ValueDescription, scalars_areWrittenPlain) {
    EXPECT_EQ(Value().description(), "(null)");
    EXPECT_EQ(Value("a \"b\"").description(), "a \"b\"");
    EXPECT_EQ(Value(true).description(), "1");
    EXPECT_EQ(Value(false).description(), "0");
    EXPECT_EQ(Value(-12).description(), "-12");
    EXPECT_EQ(Value(std::numeric_limits<std::uint64_t>::max()).description(), "18446744073709551615");
    EXPECT_EQ(Value(0.1).description(), "0.1");
    EXPECT_EQ(Value(2.0).description(), "2");
    EXPECT_EQ(Value(std::nan("")).description(), "nan");
    EXPECT_EQ(Value(Data{0x0A, 0xFF}).description(), "<0a ff>");
    EXPECT_EQ(Value(Date{86400.5}).description(), "2001-01-02 00:00:00 +0000");
    EXPECT_EQ(Value(Date{-0.5}).description(), "2000-12-31 23:59:59 +0000");
    EXPECT_EQ(Value(Date{1e300}).description(), "1e+300 s");
    EXPECT_EQ(Value(std::make_shared<Object>()).description(), "Object");
}

TEST(ValueDescription, containers_areListedInOneLineWithStringsEscaped) {
    const Value value(Dictionary{{"b", Array{1, "x\n\"y\"\\", Value()}}, {"a", true}, {"c", Dictionary{}}});
    EXPECT_EQ(value.description(), R"({"a" = 1; "b" = (1, "x\n\"y\"\\", (null)); "c" = {}})");
    EXPECT_EQ(Value(Array{"\x01\t\r"}).description(), R"(("\U0001\t\r"))");
}

}  // namespace
