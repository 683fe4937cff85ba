// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "device/networks/NetworkListFile.h"
#include "platform/foundation/PropertyList.h"
#include "tests/doubles/Phone.h"
#include "tests/doubles/TemporaryDirectory.h"

namespace {

using device::NetworkListFile;
using platform::Array;
using platform::Dictionary;
using platform::Value;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Missing = NetworkListFile::Missing;

class NetworkListFileTest : public testing::Test {
  protected:
    doubles::Phone phone;
    testing_support::TemporaryDirectory directory;
    std::string path = directory / "networks.plist";
    NetworkListFile source{path, Missing::IsAFault};

    void put(const Value& value, platform::PropertyListFormat format = platform::PropertyListFormat::XML) {
        const auto data = platform::PropertyListSerialization::dataWithPropertyList(value, format).value();
        testing_support::writeText(path, std::string(data.begin(), data.end()));
    }
    static Value network(const std::string& name) { return Dictionary{{"SSID", name}, {"other", 1}}; }
};

TEST_F(NetworkListFileTest, names_comeInTheFilesOrder) {
    for (const auto format : {platform::PropertyListFormat::XML, platform::PropertyListFormat::Binary}) {
        put(Array{network("b"), network("Café"), network("a"), network("b")}, format);
        EXPECT_THAT(source.knownSSIDs(), ElementsAre("b", "Café", "a", "b"));
    }
    EXPECT_THAT(phone.log->lines(), IsEmpty());
}

TEST_F(NetworkListFileTest, connection_isThereWhileTheListHasANetwork) {
    EXPECT_FALSE(source.isConnected());
    put(Array{network("a")});
    EXPECT_TRUE(source.isConnected());
    EXPECT_TRUE(source.isConnected());
    put(Array{Dictionary{{"other", 1}}});
    EXPECT_FALSE(source.isConnected());
    testing_support::writeText(path, "no property list");
    EXPECT_FALSE(source.isConnected());
    EXPECT_THAT(phone.log->lines(), IsEmpty());
}

TEST_F(NetworkListFileTest, data_areTheBytesOfTheName) {
    const auto bytes = [](std::string_view text) {
        return Value(Dictionary{{"SSID", platform::Data(text.begin(), text.end())}});
    };
    for (const auto format : {platform::PropertyListFormat::XML, platform::PropertyListFormat::Binary}) {
        put(Array{bytes("Caf\xC3\xA9"), bytes("caf\xE9"), network("caf\\xE9"), bytes("caf\\xE9"),
                  bytes("a\\b")},
            format);
        EXPECT_THAT(source.knownSSIDs(),
                    ElementsAre("Café", "caf\\xE9", "caf\\x5CxE9", "caf\\x5CxE9", "a\\b"));
    }
    EXPECT_THAT(phone.log->lines(), IsEmpty());
}

TEST_F(NetworkListFileTest, file_isReadAnewAtEachCall) {
    put(Array{network("a")});
    EXPECT_THAT(source.knownSSIDs(), ElementsAre("a"));
    put(Array{});
    EXPECT_THAT(source.knownSSIDs(), IsEmpty());
}

TEST_F(NetworkListFileTest, entriesWithoutAName_areLeftOutWithOneLine) {
    put(Array{network("a"), 1, Dictionary{}, Dictionary{{"SSID", 2}}, network(""),
              Dictionary{{"SSID", platform::Data()}}, network("b")});
    EXPECT_THAT(source.knownSSIDs(), ElementsAre("a", "b"));
    EXPECT_THAT(phone.log->lines(),
                ElementsAre("In the networks file \"" + path + "\", 5 of 7 entries have no \"SSID\"."));
}

TEST_F(NetworkListFileTest, brokenFile_isEmptyWithOneLineThatNamesIt) {
    testing_support::writeText(path, "nonsense");
    EXPECT_THAT(source.knownSSIDs(), IsEmpty());
    EXPECT_THAT(phone.log->lines(),
                ElementsAre(testing::StartsWith("The networks file \"" + path + "\" cannot be used: ")));
}

TEST_F(NetworkListFileTest, listOfAnotherShape_isEmptyWithOneLine) {
    put(Dictionary{{"SSID", "a"}});
    EXPECT_THAT(source.knownSSIDs(), IsEmpty());
    EXPECT_THAT(phone.log->lines(), ElementsAre(HasSubstr("it is no array")));
}

TEST_F(NetworkListFileTest, missingFile_isAFaultOnlyWhenItWasGiven) {
    EXPECT_THAT(NetworkListFile(path, Missing::IsEmpty).knownSSIDs(), IsEmpty());
    EXPECT_THAT(phone.log->lines(), IsEmpty());
    EXPECT_THAT(source.knownSSIDs(), IsEmpty());
    EXPECT_THAT(phone.log->lines(), ElementsAre(HasSubstr("No such file or directory")));
}

TEST_F(NetworkListFileTest, hugeFile_isNotRead) {
    testing_support::writeText(path, "");
    std::filesystem::resize_file(path, std::uintmax_t{1} << 40);
    EXPECT_THAT(source.knownSSIDs(), IsEmpty());
    EXPECT_THAT(phone.log->lines(), ElementsAre(HasSubstr("it is too large")));
}

}  // namespace
