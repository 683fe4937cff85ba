// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "platform/foundation/PropertyList.h"
#include "platform/foundation/XMLPropertyListReader.h"
#include "tests/doubles/Required.h"

namespace {

using doubles::errorOf;
using doubles::required;
using platform::Array;
using platform::Data;
using platform::Date;
using platform::Dictionary;
using platform::PropertyListSerialization;
using platform::Result;
using platform::Value;
using testing::HasSubstr;

Result<Value> read(std::string_view document) {
    return PropertyListSerialization::propertyListWithData(Data(document.begin(), document.end()));
}
Result<Value> element(std::string_view content) {
    return read("<plist>" + std::string(content) + "</plist>");
}

TEST(XMLPropertyListReader, aUsualFile_isRead) {
    const auto value = read(
        "\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<!DOCTYPE plist PUBLIC \"-//SOMEBODY//DTD PLIST 1.0//EN\" \"plist> [.dtd\">\n"
        "<!-- a comment --><plist version='1.0'>\n<dict>\n"
        "\t<key>a &lt;key&gt;</key> <string>x &amp; y &quot;&apos; &#228;&#x1F600;</string>\n"
        "\t<!-- <key> --><key>data</key><data>\n\tAAEC\n\t/w==\n</data>\n"
        "\t<key>date</key><date>2001-01-02T00:00:01Z</date>\n"
        "\t<key>list</key><array><true/><false></false><integer>-3</integer><real>2.5</real><dict/><array/></"
        "array>\n"
        "</dict>\n</plist>\n<!-- the end -->\n");
    EXPECT_EQ(value, Value(Dictionary{{"a <key>", "x & y \"' ä😀"},
                                      {"data", Data{0, 1, 2, 255}},
                                      {"date", Date{86401}},
                                      {"list", Array{true, false, -3, 2.5, Dictionary{}, Array{}}}}))
        << errorOf(value);
}

TEST(XMLPropertyListReader, strings_keepTheirBlanksAndJoinTheirPieces) {
    EXPECT_EQ(element("<string> a<!-- x --><![CDATA[<b>&amp;]]>c </string>"), Value(" a<b>&amp;c "));
    EXPECT_EQ(element("<string/>"), Value(""));
    EXPECT_EQ(element("<string>1\r\n2\r3\n&#13;</string>"), Value("1\n2\n3\n\r"));
}

TEST(XMLPropertyListReader, integers_areDecimalOrHexadecimalUpTo64Bits) {
    EXPECT_EQ(element("<integer> 0 </integer>"), Value(0));
    EXPECT_EQ(element("<integer>+7</integer>"), Value(7));
    EXPECT_EQ(element("<integer>0xFf</integer>"), Value(255));
    EXPECT_EQ(element("<integer>-0x10</integer>"), Value(-16));
    EXPECT_EQ(element("<integer>18446744073709551615</integer>"),
              Value(std::numeric_limits<std::uint64_t>::max()));
    EXPECT_EQ(element("<integer>-9223372036854775808</integer>"),
              Value(std::numeric_limits<std::int64_t>::min()));
    for (const char* bad :
         {"", "-", "1.5", "0x", "1 2", "--1", "0x-1", "18446744073709551616", "-9223372036854775809"}) {
        EXPECT_THAT(errorOf(element("<integer>" + std::string(bad) + "</integer>")),
                    HasSubstr("is no integer"));
    }
}

TEST(XMLPropertyListReader, reals_areReadWithTheirSpecialValues) {
    EXPECT_EQ(element("<real> -1.5e3 </real>"), Value(-1500.0));
    EXPECT_EQ(element("<real>+1</real>"), Value(1.0));
    EXPECT_EQ(element("<real>-0</real>"), Value(-0.0));
    EXPECT_EQ(element("<real>inf</real>"), Value(HUGE_VAL));
    EXPECT_EQ(element("<real>-infinity</real>"), Value(-HUGE_VAL));
    EXPECT_TRUE(std::isnan(*required(element("<real>nan</real>")->real())));
    for (const char* bad : {"", "x", "1,5", "1e999", "0x10", "+-1", "++1"}) {
        EXPECT_THAT(errorOf(element("<real>" + std::string(bad) + "</real>")),
                    HasSubstr("is no real number"));
    }
}

TEST(XMLPropertyListReader, dates_areReadInUTC) {
    EXPECT_EQ(element("<date>2000-12-31T23:59:59Z</date>"), Value(Date{-1}));
    EXPECT_EQ(element("<date>2024-02-29T12:00:00Z</date>"), Value(Date{730900800}));
    for (const char* bad :
         {"", "2026-02-29T00:00:00Z", "2026-13-01T00:00:00Z", "2026-01-01T24:00:00Z", "2026-01-01T00:60:00Z",
          "2026-01-01T00:00:60Z", "2026-01-01T00:00:00", "0000-01-01T00:00:00Z", "2026-01-01 00:00:00Z",
          "2026-01-01T00:00:00.5Z", "+026-01-01T00:00:00Z"}) {
        EXPECT_THAT(errorOf(element("<date>" + std::string(bad) + "</date>")), HasSubstr("is no date"));
    }
}

TEST(XMLPropertyListReader, dataThatIsNoBase64_isAnError) {
    EXPECT_EQ(errorOf(element("<array>\n<data>A</data></array>")),
              "The XML property list is damaged at line 2: the data is no base64.");
}

TEST(XMLPropertyListReader, malformedDocuments_areErrorsThatNameTheLine) {
    const std::vector<std::pair<std::string, std::string>> cases{
        {"<plist>\n<dict>\n", "line 2: <dict> is never closed"},
        {"<plist>\n<dict>\n</array></plist>", "line 3: <dict> is closed by </array>"},
        {"<plist>\n<string>x", "line 2: <string> is never closed"},
        {"<plist>\n<true/>\n", "line 1: <plist> is never closed"},
        {"<plist>\n</plist>", "line 2: <plist> holds no value"},
        {"<plist><true/>\n<false/></plist>", "line 2: <plist> holds more than one value"},
        {"<plist><true/></plist>\n<plist/>", "line 2: something follows the end of <plist>"},
        {"<plist><true/></plist>\nx", "text stands outside of any value"},
        {"<dict/>", "line 1: the root element is not <plist>"},
        {"<plist>\n<set/></plist>", "line 2: <set> is no property-list value"},
        {"<plist>\n<key>a</key></plist>", "line 2: <key> is no property-list value"},
        {"<plist><dict>\n<string>a</string></dict></plist>",
         "line 2: <string> stands where a <key> is expected"},
        {"<plist><dict><key>a</key>\n</dict></plist>", "line 2: the key \"a\" has no value"},
        {"<plist><dict>\nx</dict></plist>", "text stands outside of any value"},
        {"<plist><string>\n<b/></string></plist>", "line 2: <b> stands inside <string>"},
        {"<plist><true>x</true></plist>", "text stands outside of any value"},
        {"<plist><string>&foo;</string></plist>", "the entity &foo; is unknown"},
        {"<plist><string>a & b</string></plist>", "an \"&\" begins no reference"},
        {"<plist><string>&#0;</string></plist>", "the reference &#0; names no character"},
        {"<plist><string>&#xD800;</string></plist>", "names no character"},
        {"<plist><string>&#x;</string></plist>", "names no character"},
        {"<plist><string>&#-1;</string></plist>", "names no character"},
        {"<plist><!-- x", "a comment does not end"},
        {"<plist><![CDATA[x", "a CDATA section does not end"},
        {"<?xml version=\"1.0\"", "a processing instruction does not end"},
        {"<?xml version=\"1.0\" encoding=\"UTF-16\"?><plist/>", "the encoding \"utf-16\" is not supported"},
        {"<plist", "a tag does not end"},
        {"<plist a>", "the attribute \"a\" has no value"},
        {"<plist a=b>", "is not quoted"},
        {"<plist a=\"b>", "an attribute's value does not end"},
        {"<plist><true/></plist", "the end tag </plist does not end"},
        {"<plist>< true/></plist>", "a \"<\" begins no tag"},
        {"<plist>\n\n\xC3(</plist>", "line 3: byte 9 begins no UTF-8 character"},
        {"<plist><string>\x01</string></plist>", "begins no UTF-8 character that XML allows"},
    };
    for (const auto& [document, problem] : cases)
        EXPECT_THAT(errorOf(read(document)), HasSubstr(problem)) << document;
}

TEST(XMLPropertyListReader, entityDefinitions_areRefused) {
    EXPECT_THAT(
        errorOf(
            read("<?xml version=\"1.0\"?>\n<!DOCTYPE plist [\n<!ENTITY a \"b\">]><plist><string>&a;</string>"
                 "</plist>")),
        HasSubstr("line 2: the document type defines entities or elements of its own"));
    EXPECT_THAT(errorOf(read("<plist><!DOCTYPE plist><true/></plist>")), HasSubstr("stands where none may"));
    EXPECT_THAT(errorOf(read("<!DOCTYPE plist \"")), HasSubstr("the document type does not end"));
}

TEST(XMLPropertyListReader, nesting_isBounded) {
    const auto nested = [](int depth) {
        std::string text;
        for (int i = 0; i < depth; ++i) text += "<array>";
        for (int i = 0; i < depth; ++i) text += "</array>";
        return element(text);
    };
    EXPECT_TRUE(nested(PropertyListSerialization::maximumDepth));
    EXPECT_THAT(errorOf(nested(PropertyListSerialization::maximumDepth + 1)),
                HasSubstr("nest more than 512 deep"));
    EXPECT_FALSE(nested(100000));
}

TEST(XMLPropertyListReader, everyPrefixAndEveryChangedByte_givesAnErrorOrAValue) {
    const std::string whole =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?><!DOCTYPE plist PUBLIC \"a\" \"b\"><plist "
        "version=\"1.0\"><dict>"
        "<key>a&amp;</key><string>ä<![CDATA[x]]></string><key>b</key><array><integer>-12</integer><real>1e5</"
        "real>"
        "<data>AAEC</data><date>2001-01-01T00:00:00Z</date><true/></array></dict><!-- c --></plist>";
    ASSERT_TRUE(read(whole));
    for (std::size_t length = 0; length < whole.size(); ++length)
        EXPECT_FALSE(read(whole.substr(0, length))) << length;
    int errors = 0;
    for (std::size_t i = 0; i < whole.size(); ++i) {
        for (const char replacement : {'\0', '<', '>', '/', '&', '"', '[', ' ', 'x', '9', '\x80', '\xFF'}) {
            std::string changed = whole;
            changed[i] = replacement;
            if (!read(changed)) ++errors;
        }
    }
    EXPECT_GT(errors, 500);
}

TEST(PropertyList, foreignBytes_areNoPropertyList) {
    EXPECT_THAT(errorOf(read("")), HasSubstr("it is empty"));
    EXPECT_THAT(errorOf(read("hello")), HasSubstr("neither as a binary nor as an XML one"));
    EXPECT_THAT(errorOf(read("bplist00")), HasSubstr("has only 8 bytes"));
    EXPECT_EQ(PropertyListSerialization::formatOfData(Data{' ', '\n', '<'}),
              platform::PropertyListFormat::XML);
    EXPECT_EQ(PropertyListSerialization::formatOfData(Data{'b', 'p', 'l', 'i', 's', 't'}),
              platform::PropertyListFormat::Binary);
}

}  // namespace
