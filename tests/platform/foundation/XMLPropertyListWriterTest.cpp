// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "platform/foundation/PropertyList.h"
#include "platform/foundation/XMLPropertyListWriter.h"
#include "tests/doubles/Required.h"

namespace {

using doubles::required;
using platform::Array;
using platform::Data;
using platform::Date;
using platform::Dictionary;
using platform::PropertyListSerialization;
using platform::Value;
using platform::XMLPropertyListWriter;

Value throughBytes(const Value& value) {
    const auto read = PropertyListSerialization::propertyListWithData(XMLPropertyListWriter::write(value));
    EXPECT_TRUE(read) << (read ? "" : read.error().localizedDescription);
    return read.value_or(Value());
}

TEST(XMLPropertyListWriter, aDictionary_isThisDocument) {
    const Data written =
        XMLPropertyListWriter::write(Dictionary{{"a<b", Array{1, 0.1, true, "x & y", Array{}}},
                                                {"date", Date{0}},
                                                {"data", Data{0, 1}},
                                                {"none", Dictionary{}}});
    EXPECT_EQ(std::string(written.begin(), written.end()),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
              "<plist version=\"1.0\">\n"
              "<dict>\n"
              "\t<key>a&lt;b</key>\n"
              "\t<array>\n"
              "\t\t<integer>1</integer>\n"
              "\t\t<real>0.1</real>\n"
              "\t\t<true/>\n"
              "\t\t<string>x &amp; y</string>\n"
              "\t\t<array/>\n"
              "\t</array>\n"
              "\t<key>data</key>\n"
              "\t<data>AAE=</data>\n"
              "\t<key>date</key>\n"
              "\t<date>2001-01-01T00:00:00Z</date>\n"
              "\t<key>none</key>\n"
              "\t<dict/>\n"
              "</dict>\n"
              "</plist>\n");
}

TEST(XMLPropertyListWriter, values_comeBack) {
    const Value value(Array{std::numeric_limits<std::uint64_t>::max(),
                            std::numeric_limits<std::int64_t>::min(),
                            1,
                            1.0,
                            0.1,
                            5e-324,
                            1.7976931348623157e308,
                            -0.0,
                            HUGE_VAL,
                            -HUGE_VAL,
                            true,
                            false,
                            "",
                            " a \t\r\n",
                            "]]>&<>\"'",
                            "ä😀",
                            Data{},
                            Data(100, 7),
                            Date{-63113904000.0},
                            Date{252423993599.0},
                            Dictionary{{"", ""}, {" ", Array{}}}});
    EXPECT_EQ(throughBytes(value), value);
}

TEST(XMLPropertyListWriter, fractionsOfSecondsAndPayloadsOfNaN_areLost) {
    EXPECT_EQ(throughBytes(Date{1.75}), Value(Date{1}));
    EXPECT_EQ(throughBytes(Date{-0.25}), Value(Date{-1}));
    EXPECT_TRUE(std::isnan(*required(throughBytes(std::nan("7")).real())));
}

}  // namespace
