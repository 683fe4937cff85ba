// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "device/tones/BuiltInTones.h"
#include "device/tones/ThemeTones.h"
#include "platform/foundation/Bundle.h"
#include "tests/doubles/Phone.h"
#include "tests/doubles/Required.h"
#include "tests/doubles/TemporaryDirectory.h"

namespace {

using device::SoundThemes;
using device::ThemeTones;
using doubles::required;
using platform::ToneEntry;
using testing::ElementsAre;
using testing::HasSubstr;
using testing_support::writeText;

class ThemeTonesTest : public testing::Test {
  protected:
    doubles::Phone phone;
    testing_support::TemporaryDirectory directory;
    ThemeTones source{SoundThemes({directory.path()})};

    std::vector<std::string> names() {
        std::vector<std::string> names;
        for (const ToneEntry& tone : source.tones()) names.push_back(tone.name);
        return names;
    }
    std::string errorOf(const std::string& identifier) {
        const auto sound = source.sound(identifier);
        return sound ? "" : sound.error().localizedDescription;
    }
};

TEST_F(ThemeTonesTest, sounds_areTonesByNameWithTheCalendarAlertAmongThem) {
    writeText(directory / "message-new-instant.oga", "a");
    writeText(directory / "Zebra.wav", "b");
    writeText(directory / "alarm.ogg", "c");
    EXPECT_THAT(source.tones(), ElementsAre(ToneEntry{"texttone:alarm", "Alarm"},
                                            ToneEntry{"texttone:Calendar Alert", "Calendar Alert"},
                                            ToneEntry{"texttone:message-new-instant", "Message New Instant"},
                                            ToneEntry{"texttone:Zebra", "Zebra"}));
}

TEST_F(ThemeTonesTest, sound_isTheFileWithItsMediaType) {
    writeText(directory / "one.oga", "a");
    writeText(directory / "two.ogg", "b");
    writeText(directory / "Three.WAV", "c");
    const auto one = source.sound("texttone:one");
    ASSERT_TRUE(one) << one.error().localizedDescription;
    EXPECT_EQ(one->mediaType, "audio/ogg");
    EXPECT_EQ(one->bytes, platform::Data{'a'});
    EXPECT_EQ(required(source.sound("texttone:two"))->mediaType, "audio/ogg");
    EXPECT_EQ(required(source.sound("texttone:Three"))->mediaType, "audio/wav");
}

TEST_F(ThemeTonesTest, soundsThatWouldShareAName_areBothHad) {
    writeText(directory / "chord.oga", "theme");
    writeText(directory / "Chord.wav", "own");
    EXPECT_THAT(names(), ElementsAre("Calendar Alert", "Chord", "Chord (chord)"));
    EXPECT_EQ(required(source.sound("texttone:chord"))->bytes.size(), 5U);
    EXPECT_EQ(required(source.sound("texttone:Chord"))->bytes.size(), 3U);
}

TEST_F(ThemeTonesTest, nameThatIsNoText_isEscapedOnceAndCanBeHeard) {
    writeText(directory / "a\xFF.wav", "odd");
    EXPECT_THAT(source.tones(), ElementsAre(ToneEntry{R"(texttone:a\xFF)", R"(A\xFF)"},
                                            ToneEntry{"texttone:Calendar Alert", "Calendar Alert"}));
    EXPECT_EQ(required(source.sound(R"(texttone:a\xFF)"))->bytes.size(), 3U);
}

TEST_F(ThemeTonesTest, noSoundAtAll_offersTheBuiltInTones) {
    EXPECT_THAT(names(), ElementsAre("Bell", "Calendar Alert", "Chime", "Chord", "Echo", "Pulse"));
}

TEST_F(ThemeTonesTest, builtInTone_canBeHeardBesideOthers) {
    writeText(directory / "alarm.ogg", "c");
    EXPECT_EQ(required(source.sound("texttone:Chord"))->mediaType, "audio/wav");
    EXPECT_EQ(required(source.sound("texttone:Calendar Alert"))->bytes,
              *required(device::builtInTone("Calendar Alert")));
    writeText(directory / "Calendar Alert.ogg", "mine");
    EXPECT_EQ(required(source.sound("texttone:Calendar Alert"))->bytes.size(), 4U);
    EXPECT_THAT(names(), ElementsAre("Alarm", "Calendar Alert"));
}

/// On a phone whose application calls the calendar alert otherwise.
class LocalizedThemeTonesTest : public ThemeTonesTest {
  protected:
    LocalizedThemeTonesTest() {
        phone.files->put("/Settings.app/en.lproj/Localizable.strings",
                         R"("Calendar Alert" = "Kalenderhinweis"; "Chord" = "Akkord";)");
        platform::Bundle::setMainBundlePath("/Settings.app");
    }
    ~LocalizedThemeTonesTest() override { platform::Bundle::setMainBundlePath({}); }
};

TEST_F(LocalizedThemeTonesTest, calendarAlert_hasThePhonesNameAndTheOthersTheThemes) {
    writeText(directory / "Lamp.ogg", "a");
    writeText(directory / "Chord.ogg", "b");
    const auto tones = ElementsAre(ToneEntry{"texttone:Chord", "Chord"},
                                   ToneEntry{"texttone:Calendar Alert", "Kalenderhinweis"},
                                   ToneEntry{"texttone:Lamp", "Lamp"});
    EXPECT_THAT(source.tones(), tones);
    writeText(directory / "Calendar Alert.ogg", "a theme's");
    EXPECT_THAT(source.tones(), tones);
}

TEST_F(LocalizedThemeTonesTest, soundCalledLikeTheCalendarAlert_keepsItsName) {
    writeText(directory / "kalenderhinweis.ogg", "a");
    EXPECT_THAT(source.tones(),
                ElementsAre(ToneEntry{"texttone:kalenderhinweis", "Kalenderhinweis"},
                            ToneEntry{"texttone:Calendar Alert", "Kalenderhinweis (Calendar Alert)"}));
}

TEST_F(ThemeTonesTest, unknownTone_isNamed) {
    EXPECT_EQ(errorOf("texttone:Nothing"), "The tone \"texttone:Nothing\" does not exist.");
    EXPECT_EQ(errorOf("ringtone:Chord"), "The tone \"ringtone:Chord\" is of no kind that is known here.");
    EXPECT_THAT(errorOf("texttone:../../etc/passwd"), HasSubstr("does not exist"));
    EXPECT_THAT(errorOf(""), HasSubstr("no kind"));
}

TEST_F(ThemeTonesTest, soundThatCannotBeRead_isNamed) {
    writeText(directory / "huge.wav", "");
    std::filesystem::resize_file(directory / "huge.wav", ThemeTones::maximumBytes + 1);
    EXPECT_EQ(errorOf("texttone:huge"), "The tone \"texttone:huge\" is larger than 8 MiB.");
    std::filesystem::resize_file(directory / "huge.wav", ThemeTones::maximumBytes);
    EXPECT_EQ(required(source.sound("texttone:huge"))->bytes.size(), ThemeTones::maximumBytes);
}

TEST_F(ThemeTonesTest, pipe_isNoTone) {
    ASSERT_EQ(mkfifo((directory / "pipe.wav").c_str(), 0600), 0);
    writeText(directory / "alarm.ogg", "c");
    EXPECT_THAT(names(), ElementsAre("Alarm", "Calendar Alert"));
}

TEST(BuiltInTones, each_isAWaveFileOfItsOwnThatSounds) {
    std::set<platform::Data> different;
    for (const std::string& name : device::builtInToneNames()) {
        const auto wave = device::builtInTone(name);
        ASSERT_TRUE(wave) << name;
        ASSERT_GT(wave->size(), 44U);
        EXPECT_EQ(std::string(wave->begin(), wave->begin() + 4), "RIFF");
        EXPECT_EQ(std::string(wave->begin() + 8, wave->begin() + 16), "WAVEfmt ");
        const auto number = [&](std::size_t at) {
            return (*wave)[at] | (*wave)[at + 1] << 8 | (*wave)[at + 2] << 16 | (*wave)[at + 3] << 24;
        };
        EXPECT_EQ(static_cast<std::size_t>(number(4)), wave->size() - 8);
        EXPECT_EQ(static_cast<std::size_t>(number(40)), wave->size() - 44);
        int loudest = 0;
        for (std::size_t at = 44; at < wave->size(); at += 2)
            loudest = std::max(
                loudest,
                std::abs(static_cast<int>(static_cast<std::int16_t>((*wave)[at] | (*wave)[at + 1] << 8))));
        EXPECT_GT(loudest, 5000) << name;
        EXPECT_LT(loudest, 32000) << name;
        EXPECT_TRUE(different.insert(*wave).second) << name;
    }
    EXPECT_FALSE(device::builtInTone("None"));
}

}  // namespace
