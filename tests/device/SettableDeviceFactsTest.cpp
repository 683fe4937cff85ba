// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "device/PhonePaths.h"
#include "device/SettableDeviceFacts.h"
#include "platform/foundation/PropertyList.h"
#include "tests/device/Child.h"
#include "tests/doubles/Phone.h"
#include "tests/doubles/Required.h"
#include "tests/doubles/TemporaryDirectory.h"

namespace {

using device::DeviceOptions;
using device::SettableDeviceFacts;
using doubles::required;
using testing::HasSubstr;
using testing::MatchesRegex;

const std::string factsPath(device::phonePaths::deviceFacts);

class SettableDeviceFactsTest : public testing::Test {
  protected:
    doubles::Phone phone;
    DeviceOptions options;

    SettableDeviceFacts facts() { return SettableDeviceFacts(options, phone.files); }
};

TEST_F(SettableDeviceFactsTest, options_areWhatItSays) {
    options.systemVersion = "13.1";
    options.idiom = device::Idiom::Pad;
    options.scale = 3;
    options.languages = {"de", "en"};
    options.darkMode = true;
    options.serialNumber = "S";
    options.UDID = "U";
    options.model = "M";
    SettableDeviceFacts facts = this->facts();
    EXPECT_EQ(facts.systemVersion(), "13.1");
    EXPECT_EQ(facts.userInterfaceIdiom(), 1);
    EXPECT_EQ(facts.screenScale(), 3);
    EXPECT_EQ(facts.preferredLanguages(), (std::vector<std::string>{"de", "en"}));
    EXPECT_TRUE(facts.isDarkMode());
    facts.setDarkMode(false);
    EXPECT_FALSE(facts.isDarkMode());
    EXPECT_EQ(facts.serialNumber(), "S");
    EXPECT_EQ(facts.UDID(), "U");
    EXPECT_EQ(facts.model(), "M");
    EXPECT_FALSE(phone.files->exists(factsPath));
}

TEST_F(SettableDeviceFactsTest, whatIsLeftOut_isMadeUpOnceForTheRoot) {
    const SettableDeviceFacts first = facts();
    EXPECT_THAT(first.serialNumber(), MatchesRegex("[0-9A-Z]+"));
    EXPECT_EQ(first.serialNumber().size(), 12U);
    EXPECT_THAT(first.UDID(), MatchesRegex("[0-9a-f]+"));
    EXPECT_EQ(first.UDID().size(), 40U);
    EXPECT_THAT(first.model(), MatchesRegex("Phone[0-9],[0-9]"));

    options.model = "given";
    const SettableDeviceFacts second = facts();
    EXPECT_EQ(second.serialNumber(), first.serialNumber());
    EXPECT_EQ(second.UDID(), first.UDID());
    EXPECT_EQ(second.model(), "given");

    phone.files = std::make_shared<doubles::MemoryFileSystem>();
    EXPECT_NE(facts().UDID(), first.UDID());
}

TEST_F(SettableDeviceFactsTest, rootThatCannotBeWritten_valuesLastForTheProcessAndOneLineSaysSo) {
    phone.files->failWrites("Read-only file system");
    const SettableDeviceFacts facts = this->facts();
    EXPECT_EQ(facts.serialNumber().size(), 12U);
    EXPECT_EQ(facts.serialNumber(), facts.serialNumber());
    phone.drain();
    ASSERT_EQ(phone.log->lines().size(), 1U);
    EXPECT_THAT(phone.log->lines()[0], HasSubstr("could not be written: Read-only file system."));
}

TEST_F(SettableDeviceFactsTest, fileWithSomethingElse_isLeftAloneAndNamed) {
    const auto list = platform::PropertyListSerialization::dataWithPropertyList(
        platform::Dictionary{{"serialNumber", "S"}, {"UDID", 5}, {"model", "M"}},
        platform::PropertyListFormat::Binary);
    ASSERT_TRUE(list);
    for (const platform::Data& content : {platform::Data{'x'}, platform::Data{}, *list}) {
        phone.files->put(factsPath, content);
        const std::size_t linesBefore = phone.log->lines().size();
        EXPECT_EQ(facts().UDID().size(), 40U);
        phone.drain();
        ASSERT_EQ(phone.log->lines().size(), linesBefore + 1);
        EXPECT_THAT(phone.log->lines().back(), HasSubstr(factsPath));
        EXPECT_EQ(*required(phone.files->read(factsPath)), content);
    }
}

TEST_F(SettableDeviceFactsTest, severalProcessesThatStartOnANewRootAtOnce_saySame) {
    const testing_support::TemporaryDirectory root;
    std::vector<std::unique_ptr<testing_support::Child>> peers;
    for (int i = 0; i < 4; ++i) {
        peers.push_back(std::make_unique<testing_support::Child>(
            std::vector<std::string>{"facts", root.path().string()}));
    }
    const auto first = peers[0]->readLine();
    ASSERT_TRUE(first);
    for (std::size_t i = 1; i < peers.size(); ++i) EXPECT_EQ(peers[i]->readLine(), first);
}

}  // namespace
