// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "device/DeviceOptions.h"
#include "device/VirtualClock.h"
#include "tests/doubles/Required.h"
#include "tests/doubles/TemporaryDirectory.h"

namespace {

using device::DeviceOptions;
using device::Idiom;
using doubles::required;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Pairs = std::vector<std::string>;

DeviceOptions parsed(const Pairs& pairs) {
    const auto options = DeviceOptions::parse(pairs);
    EXPECT_TRUE(options) << options.error().localizedDescription;
    return options.value_or(DeviceOptions());
}

std::string errorOf(const std::string& pair) {
    const auto options = DeviceOptions::parse(Pairs{pair});
    return options ? "" : options.error().localizedDescription;
}

TEST(DeviceOptions, nothingGiven_isAPlainPhone) {
    const DeviceOptions options = parsed({});
    EXPECT_EQ(options.systemVersion, "11.4");
    EXPECT_EQ(options.idiom, Idiom::Phone);
    EXPECT_EQ(options.scale, 2.0);
    EXPECT_THAT(options.languages, ElementsAre("en"));
    EXPECT_FALSE(options.darkMode);
    EXPECT_FALSE(options.clock);
    EXPECT_TRUE(options.statusBarLibrary);
    EXPECT_THAT(options.toneController, ElementsAre("PSUIToneController"));
    EXPECT_EQ(options.mailAccount, "");
    EXPECT_FALSE(options.twitterApp);
    EXPECT_FALSE(options.serialNumber || options.UDID || options.model);
    EXPECT_FALSE(options.calendars);
    EXPECT_EQ(options.networks.source, DeviceOptions::Networks::Source::Root);
    EXPECT_FALSE(options.tones);
}

TEST(DeviceOptions, everyKey_isStored) {
    const testing_support::TemporaryDirectory directory;
    testing_support::writeText(directory / "networks.plist", "");
    const std::string path = directory.path().string();
    const DeviceOptions options =
        parsed({"systemVersion=13.5.1", "idiom=pad", "scale=3", "languages=de-AT,zh-Hans,en", "darkMode=true",
                "clock=2026-11-20T09:00:00", "statusBarLibrary=false",
                "toneController=SHSToneController,ToneController", "mailAccount=a@b.example",
                "twitterApp=true", "serialNumber=S=1", "UDID=u", "model=M", "calendars=" + path,
                "networks=" + path + "/networks.plist", "tones=" + path});
    EXPECT_EQ(options.systemVersion, "13.5.1");
    EXPECT_EQ(options.idiom, Idiom::Pad);
    EXPECT_EQ(options.scale, 3.0);
    EXPECT_THAT(options.languages, ElementsAre("de-AT", "zh-Hans", "en"));
    EXPECT_TRUE(options.darkMode);
    EXPECT_EQ(options.clock, *required(device::VirtualClock::parse("2026-11-20T09:00:00")));
    EXPECT_FALSE(options.statusBarLibrary);
    EXPECT_THAT(options.toneController, ElementsAre("SHSToneController", "ToneController"));
    EXPECT_EQ(options.mailAccount, "a@b.example");
    EXPECT_TRUE(options.twitterApp);
    EXPECT_EQ(options.serialNumber, "S=1");
    EXPECT_EQ(options.UDID, "u");
    EXPECT_EQ(options.model, "M");
    EXPECT_EQ(options.calendars, path);
    EXPECT_EQ(options.networks.source, DeviceOptions::Networks::Source::File);
    EXPECT_EQ(options.networks.file, path + "/networks.plist");
    EXPECT_EQ(options.tones, path);
}

TEST(DeviceOptions, words_standForWhatTheMachineHas) {
    const DeviceOptions options =
        parsed({"clock=system", "toneController=none", "mailAccount=", "networks=system", "tones=system"});
    EXPECT_FALSE(options.clock);
    EXPECT_THAT(options.toneController, IsEmpty());
    EXPECT_EQ(options.networks.source, DeviceOptions::Networks::Source::System);
    EXPECT_FALSE(options.tones);
}

TEST(DeviceOptions, aKeyGivenTwice_takesTheLater) {
    EXPECT_EQ(parsed({"scale=3", "scale=1"}).scale, 1.0);
    EXPECT_FALSE(parsed({"clock=2026-11-20T09:00:00", "clock=system"}).clock);
}

TEST(DeviceOptions, unknownKeyOrNoPair_isNamed) {
    EXPECT_EQ(errorOf("colour=red"), "There is no device option \"colour\".");
    EXPECT_EQ(errorOf("=red"), "There is no device option \"\".");
    EXPECT_EQ(errorOf("scale"), "The device option \"scale\" is not of the form KEY=VALUE.");
}

TEST(DeviceOptions, badValue_isNamedWithWhatIsExpected) {
    EXPECT_EQ(errorOf("idiom=watch"),
              "The device option \"idiom\" cannot be \"watch\": it takes phone or pad.");
    for (const char* pair : {"systemVersion=",
                             "systemVersion=11.",
                             "systemVersion=a",
                             "scale=0",
                             "scale=-1",
                             "scale=nan",
                             "scale=2x",
                             "scale=",
                             "languages=",
                             "languages=en,",
                             "languages=e n",
                             "darkMode=yes",
                             "clock=noon",
                             "statusBarLibrary=1",
                             "toneController=",
                             "toneController=none,ToneController",
                             "toneController=Other",
                             "mailAccount=nobody",
                             "mailAccount=@b",
                             "mailAccount=a@b@c",
                             "mailAccount=a @b",
                             "mailAccount=a@",
                             "mailAccount=a<b>@c.d",
                             "mailAccount=a,b@c",
                             "mailAccount=x;y@c",
                             "mailAccount=müller@example.org",
                             "twitterApp=",
                             "serialNumber=",
                             "UDID=",
                             "model=",
                             "calendars=/nowhere/at/all",
                             "networks=/nowhere/at/all",
                             "networks=/",
                             "tones=/nowhere/at/all"}) {
        const std::string key = std::string(pair).substr(0, std::string(pair).find('='));
        EXPECT_THAT(errorOf(pair), HasSubstr("The device option \"" + key + "\" cannot be \"")) << pair;
    }
}

TEST(DeviceOptions, help_hasALineForEachKey) {
    const std::string help = DeviceOptions::help();
    EXPECT_EQ(std::count(help.begin(), help.end(), '\n'), 16);
    EXPECT_THAT(help, HasSubstr("idiom=: phone or pad\n"));
}

TEST(DeviceOptions, pairs_giveTheSameOptionsAgain) {
    const testing_support::TemporaryDirectory directory;
    const std::string path = directory.path().string();
    const Pairs given{"systemVersion=13.5.1",
                      "idiom=pad",
                      "scale=2.625",
                      "languages=de-AT,zh-Hans,en",
                      "darkMode=true",
                      "clock=2026-11-20T09:00:00",
                      "statusBarLibrary=false",
                      "toneController=SHSToneController,ToneController",
                      "mailAccount=a@b.example",
                      "twitterApp=true",
                      "serialNumber=S=1",
                      "UDID=u",
                      "model=M",
                      "calendars=" + path,
                      "networks=system",
                      "tones=" + path};
    EXPECT_EQ(given, parsed(given).pairs());
    EXPECT_EQ(parsed({}).pairs(), parsed(parsed({}).pairs()).pairs());
    EXPECT_THAT(parsed({}).pairs(), testing::Contains("toneController=none").Times(0));
    EXPECT_THAT(parsed({"toneController=none"}).pairs(), testing::Contains("toneController=none"));
}

TEST(DeviceOptions, placesOfTheMachine_areToldFromTheRest) {
    EXPECT_TRUE(DeviceOptions::isOfTheMachine("calendars=/somewhere"));
    EXPECT_TRUE(DeviceOptions::isOfTheMachine("networks=system"));
    EXPECT_TRUE(DeviceOptions::isOfTheMachine("tones=system"));
    EXPECT_FALSE(DeviceOptions::isOfTheMachine("idiom=calendars"));
    EXPECT_FALSE(DeviceOptions::isOfTheMachine("nothing"));
}

}  // namespace
