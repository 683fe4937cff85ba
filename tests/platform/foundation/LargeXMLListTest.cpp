// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <string>

#include "platform/foundation/LargeXMLList.h"
#include "platform/foundation/PropertyList.h"

namespace {

using platform::Data;
using platform::LargeXMLList;
using platform::PropertyListSerialization;
using platform::Value;
using testing::HasSubstr;

Data bytesOf(std::string_view text) {
    return {text.begin(), text.end()};
}

/// A document whose root has these entries.
Data documentOf(const std::string& entries) {
    return bytesOf("<?xml version=\"1.0\"?>\n<!DOCTYPE plist>\n<plist>\n<dict>" + entries +
                   "</dict>\n</plist>\n");
}

std::string errorOf(const Data& document) {
    const auto binary = LargeXMLList::toBinary(document);
    return binary ? "" : binary.error().localizedDescription;
}

TEST(LargeXMLList, document_isTheListThatThePlatformReads) {
    std::string many;
    for (int i = 0; i < 30'000; ++i) {
        many += "<dict><key>number</key><integer>" + std::to_string(i) +
                "</integer><key>same</key><string>Gr\u00f6\u00dfe &amp; more</string></dict>\n";
    }
    ASSERT_GT(many.size(), std::size_t{2} << 20) << "more than one piece";
    for (const std::string& entries :
         {std::string(), std::string("<key>a</key><true/>"),
          "<key>list</key> <array>" + many + "</array><!-- end --><key>list of none</key><array/>",
          std::string("<key>a</key><dict><key>b</key><array><array/><date>2026-11-20T12:00:00Z</date></array>"
                      "</dict><key>a</key><real>1.5</real><key/><data>AAEC</data>"
                      "<key>c<![CDATA[<d>]]></key><string/>")}) {
        const Data document = documentOf(entries);
        const auto binary = LargeXMLList::toBinary(document);
        ASSERT_TRUE(binary) << binary.error().localizedDescription;
        EXPECT_EQ(PropertyListSerialization::propertyListWithData(document),
                  PropertyListSerialization::propertyListWithData(*binary));
    }
}

TEST(LargeXMLList, damage_isNamed) {
    EXPECT_THAT(errorOf(bytesOf("<plist><array/></plist>")), HasSubstr("<dict> is expected"));
    EXPECT_THAT(errorOf(bytesOf("<dict/>")), HasSubstr("<plist> is expected"));
    EXPECT_THAT(errorOf(documentOf("<key>a</key>")), HasSubstr("a key has no value"));
    EXPECT_THAT(errorOf(documentOf("<string>a</string>")), HasSubstr("<key> or </dict> is expected"));
    EXPECT_THAT(errorOf(documentOf("text")), HasSubstr("text stands outside"));
    EXPECT_THAT(errorOf(documentOf("<key>a<b/></key>")), HasSubstr("a key is text alone"));
    EXPECT_THAT(errorOf(documentOf("<key>a</key><array></dict>")), HasSubstr("</array> is expected"));
    EXPECT_THAT(errorOf(documentOf("<key>a</key><array><string>b</array></array>")),
                HasSubstr("Shortly before byte"));
    EXPECT_THAT(errorOf(documentOf("<key>a</key><integer>b</integer>")), HasSubstr("no integer"));
    EXPECT_THAT(errorOf(documentOf("</dict></plist><dict>")), HasSubstr("something follows"));
    EXPECT_THAT(errorOf(bytesOf("<plist><dict><key>a</key><array><dict>")),
                HasSubstr("<dict> is never closed"));
    EXPECT_THAT(errorOf(documentOf("<key>a</key><string>" + std::string(2 << 20, 'x') + "</string>")),
                HasSubstr("one element has 2097"));
}

TEST(LargeXMLList, everyPrefix_isRefused) {
    const std::string text =
        "<plist><dict><key>a</key><array><true/><string>b</string></array></dict></plist>";
    for (std::size_t size = 0; size < text.size(); ++size)
        EXPECT_NE("", errorOf(bytesOf(std::string_view(text).substr(0, size)))) << size;
    EXPECT_EQ("", errorOf(bytesOf(text)));
}

}  // namespace
