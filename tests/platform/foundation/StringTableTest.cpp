// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "platform/foundation/PropertyList.h"
#include "platform/foundation/StringTable.h"
#include "tests/doubles/Required.h"

namespace {

using doubles::errorOf;
using platform::Array;
using platform::Data;
using platform::Dictionary;
using platform::parseStringTable;
using platform::PropertyListFormat;
using platform::PropertyListSerialization;
using platform::StringTable;
using platform::Value;

Data bytes(std::string_view text) {
    return {text.begin(), text.end()};
}

std::string problemIn(std::string_view text) {
    return errorOf(parseStringTable(bytes(text)));
}

Data utf16(std::u16string_view text, bool bigEndian) {
    Data data;
    for (const char16_t unit : u"\uFEFF" + std::u16string(text)) {
        const auto high = static_cast<std::uint8_t>(unit >> 8);
        const auto low = static_cast<std::uint8_t>(unit & 0xFF);
        data.push_back(bigEndian ? high : low);
        data.push_back(bigEndian ? low : high);
    }
    return data;
}

TEST(StringTable, entriesWithComments_areRead) {
    const auto table =
        parseStringTable(bytes("\xEF\xBB\xBF/* a * comment */ \"Key\" = \"Wert\"; // to the end\n"
                               "\"b\"=\"ä\";\r\n\"c\" /* between */ = // both\n \"\" ;"));
    EXPECT_EQ(table, (StringTable{{"Key", "Wert"}, {"b", "ä"}, {"c", ""}}));
}

TEST(StringTable, emptyText_isAnEmptyTable) {
    EXPECT_EQ(parseStringTable(bytes("")), StringTable());
    EXPECT_EQ(parseStringTable(bytes(" \n // nothing")), StringTable());
}

TEST(StringTable, escapes_areResolved) {
    const auto table = parseStringTable(bytes(R"("a\"\\" = "x\n\t\r\U00e9\Ud83d\Ude00";)"));
    EXPECT_EQ(table, (StringTable{{"a\"\\", "x\n\t\ré😀"}}));
}

TEST(StringTable, keyThatComesTwice_takesItsLastValue) {
    EXPECT_EQ(parseStringTable(bytes("\"a\" = \"1\"; \"a\" = \"2\";")), (StringTable{{"a", "2"}}));
}

TEST(StringTable, utf16_isReadInBothByteOrders) {
    for (const bool bigEndian : {true, false}) {
        EXPECT_EQ(parseStringTable(utf16(u"\"ключ\" = \"值😀\";", bigEndian)),
                  (StringTable{{"ключ", "值😀"}}));
    }
    Data cut = utf16(u"\"a\" = \"b\";", true);
    cut.pop_back();
    EXPECT_FALSE(parseStringTable(cut));
}

TEST(StringTable, propertyLists_areReadInBothFormats) {
    for (const auto format : {PropertyListFormat::XML, PropertyListFormat::Binary}) {
        const auto good =
            PropertyListSerialization::dataWithPropertyList(Dictionary{{"a", "1"}}, format).value();
        EXPECT_EQ(parseStringTable(good), (StringTable{{"a", "1"}}));
        const auto list = PropertyListSerialization::dataWithPropertyList(Array{"a"}, format).value();
        EXPECT_EQ(errorOf(parseStringTable(list)), "The string table's property list is no dictionary.");
        const auto number =
            PropertyListSerialization::dataWithPropertyList(Dictionary{{"a", 1}}, format).value();
        EXPECT_EQ(errorOf(parseStringTable(number)),
                  "The string table's value for the key \"a\" is no string.");
    }
}

TEST(StringTable, errors_nameTheLineAndWhatWasExpected) {
    const std::string damaged = "The string table is damaged at line ";
    EXPECT_EQ(problemIn("\n\nkey = \"a\";"), damaged + "3: expected a key in quotation marks, found \"k\".");
    EXPECT_EQ(problemIn("\"a\"\n\"b\";"), damaged + "2: expected \"=\" after the key, found \"\"\".");
    EXPECT_EQ(problemIn("\"a\" = ä;"), damaged + "1: expected a value in quotation marks, found \"ä\".");
    EXPECT_EQ(problemIn("\"a\" = \"b\""), damaged + "1: expected \";\" after the value, found the end.");
    EXPECT_EQ(problemIn("\n\"a\" = \"b\n\n"),
              damaged + "2: expected a closing quotation mark for the text that begins here.");
    EXPECT_EQ(problemIn("\n/* open"), damaged + "2: expected \"*/\" after this comment.");
    EXPECT_EQ(problemIn("\"\\x\""), damaged + R"(1: expected one of \" \\ \n \t \r \U after the backslash.)");
    EXPECT_EQ(problemIn("\"\\U12g4\""), damaged + "1: expected four hexadecimal digits after \\U.");
    EXPECT_EQ(problemIn("\"\\U12"), damaged + "1: expected four hexadecimal digits after \\U.");
    EXPECT_EQ(problemIn("\"\\Ud83d\""), damaged + "1: expected both halves of a surrogate pair.");
    EXPECT_EQ(problemIn("\"\\Ud83d\\U0041\""), damaged + "1: expected both halves of a surrogate pair.");
    EXPECT_EQ(problemIn("\"a\" = \"b\";\n\xFF"), damaged + "2: expected UTF-8 at byte 11.");
}

TEST(StringTable, everyPrefixOfAFile_isReadOrRefused) {
    const std::string whole = "/* c */ \"a\" = \"b\\U00e9\"; // d\n\"ä\" = \"\\\"\";";
    int tables = 0;
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        if (parseStringTable(bytes(whole.substr(0, length)))) ++tables;
    }
    EXPECT_GT(tables, 2);
}

}  // namespace
