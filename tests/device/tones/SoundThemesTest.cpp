// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

#include "device/tones/SoundThemes.h"
#include "tests/doubles/Phone.h"
#include "tests/doubles/TemporaryDirectory.h"

namespace {

namespace fs = std::filesystem;
using device::SoundThemes;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Pair;
using testing_support::writeText;

class SoundThemesTest : public testing::Test {
  protected:
    doubles::Phone phone;
    testing_support::TemporaryDirectory base;
    SoundThemes themes{{base.path() / "user", base.path() / "machine"}};

    void put(const std::string& path) { writeText(base / path, "sound"); }
    void theme(const std::string& path, const std::string& lines = "Directories=stereo\n") {
        writeText(base / (path + "/index.theme"), "[Sound Theme]\nName=x\n" + lines);
    }
    /// From each sound's name to its file within the test's directory.
    std::map<std::string, std::string> sounds() {
        std::map<std::string, std::string> sounds;
        for (const auto& [name, file] : themes.sounds())
            sounds[name] = file.lexically_relative(base.path()).native();
        return sounds;
    }
};

TEST_F(SoundThemesTest, filesOfAThemesFolders_areItsSounds) {
    theme("machine/blue");
    put("machine/blue/stereo/bell.oga");
    put("machine/blue/stereo/message-new.ogg");
    put("machine/blue/stereo/Loud.WAV");
    put("machine/blue/stereo/notes.txt");
    put("machine/blue/stereo/.hidden.oga");
    put("machine/blue/other/unlisted.oga");
    EXPECT_THAT(sounds(), ElementsAre(Pair("Loud", "machine/blue/stereo/Loud.WAV"),
                                      Pair("bell", "machine/blue/stereo/bell.oga"),
                                      Pair("message-new", "machine/blue/stereo/message-new.ogg")));
    EXPECT_THAT(phone.log->lines(), IsEmpty());
}

TEST_F(SoundThemesTest, oneNameInSeveralFiles_takesTheBestKindAndTheFirstFolder) {
    theme("machine/blue", "Directories=one,two\n");
    put("machine/blue/one/a.wav");
    put("machine/blue/one/a.oga");
    put("machine/blue/one/a.ogg");
    put("machine/blue/two/a.oga");
    put("machine/blue/two/b.oga");
    EXPECT_THAT(sounds(),
                ElementsAre(Pair("a", "machine/blue/one/a.oga"), Pair("b", "machine/blue/two/b.oga")));
}

TEST_F(SoundThemesTest, usersFolderOfATheme_comesBeforeTheMachines) {
    theme("machine/blue");
    put("machine/blue/stereo/a.oga");
    put("machine/blue/stereo/b.oga");
    put("user/blue/stereo/a.oga");
    EXPECT_THAT(sounds(),
                ElementsAre(Pair("a", "user/blue/stereo/a.oga"), Pair("b", "machine/blue/stereo/b.oga")));
}

TEST_F(SoundThemesTest, inheritedThemes_comeRightAfterTheTheme) {
    theme("machine/a", "Directories=stereo\nInherits=z\n");
    theme("machine/m");
    theme("machine/z");
    put("machine/m/stereo/bell.oga");
    put("machine/z/stereo/bell.oga");
    EXPECT_THAT(sounds(), ElementsAre(Pair("bell", "machine/z/stereo/bell.oga")));
}

TEST_F(SoundThemesTest, themesThatInheritFromEachOther_areTakenOnce) {
    theme("machine/a", "Directories=stereo\nInherits=a,b,missing\n");
    theme("machine/b", "Directories=stereo\nInherits=a\n");
    put("machine/b/stereo/bell.oga");
    EXPECT_THAT(sounds(), ElementsAre(Pair("bell", "machine/b/stereo/bell.oga")));
}

TEST_F(SoundThemesTest, fallbackThemeAndLooseFiles_comeLast) {
    theme("machine/a", "Directories=stereo\nInherits=freedesktop\n");
    theme("machine/freedesktop");
    theme("machine/z");
    put("machine/freedesktop/stereo/bell.oga");
    put("machine/z/stereo/bell.oga");
    put("machine/freedesktop/stereo/only.oga");
    put("machine/only.wav");
    put("user/loose.wav");
    EXPECT_THAT(sounds(),
                ElementsAre(Pair("bell", "machine/z/stereo/bell.oga"), Pair("loose", "user/loose.wav"),
                            Pair("only", "machine/freedesktop/stereo/only.oga")));
}

TEST_F(SoundThemesTest, disabledSound_isHiddenFromThereOn) {
    theme("machine/a");
    theme("machine/b");
    put("machine/a/stereo/bell.disabled");
    put("machine/a/stereo/bell.oga");
    put("machine/b/stereo/bell.oga");
    put("machine/a/stereo/ring.oga");
    put("machine/b/stereo/ring.disabled");
    EXPECT_THAT(sounds(), ElementsAre(Pair("ring", "machine/a/stereo/ring.oga")));
}

TEST_F(SoundThemesTest, hiddenTheme_isOnlyInherited) {
    theme("machine/hidden", "Directories=stereo\nHidden=true\n");
    put("machine/hidden/stereo/bell.oga");
    EXPECT_THAT(sounds(), IsEmpty());
    theme("machine/shown", "Inherits=hidden\n");
    EXPECT_THAT(sounds(), ElementsAre(Pair("bell", "machine/hidden/stereo/bell.oga")));
}

TEST_F(SoundThemesTest, directoryThatIsAThemeItself_counts) {
    theme("user");
    put("user/stereo/bell.oga");
    EXPECT_THAT(sounds(), ElementsAre(Pair("bell", "user/stereo/bell.oga")));
}

TEST_F(SoundThemesTest, brokenTheme_isLeftOutAndLoggedOnceUntilItChanges) {
    writeText(base / "machine/bad/index.theme", "nonsense");
    theme("machine/good");
    put("machine/good/stereo/bell.oga");
    put("machine/bad/stereo/bad.oga");
    EXPECT_THAT(sounds(), ElementsAre(Pair("bell", testing::_)));
    EXPECT_THAT(sounds(), ElementsAre(Pair("bell", testing::_)));
    EXPECT_THAT(phone.log->lines(),
                ElementsAre(HasSubstr("\"" + (base / "machine/bad/index.theme") + "\" is no sound theme")));
    writeText(base / "machine/bad/index.theme", "other nonsense");
    sounds();
    EXPECT_EQ(phone.log->lines().size(), 2U);
}

TEST_F(SoundThemesTest, faultsThatAreAskedFor_areNotLogged) {
    writeText(base / "machine/bad/index.theme", "nonsense");
    writeText(base / "machine/good/index.theme", "[Sound Theme]\nDirectories=stereo\nInherits=bad\n");
    put("machine/good/stereo/bell.oga");
    const auto found = themes.look();
    EXPECT_EQ(found.sounds.size(), 1U);
    ASSERT_EQ(found.faults.size(), 1U) << "however often the file is looked at";
    EXPECT_THAT(found.faults.front().sentence, HasSubstr("is no sound theme"));
    EXPECT_THAT(phone.log->lines(), IsEmpty());
}

TEST_F(SoundThemesTest, soundsBeyondTheLimit_areLeftOutWithALine) {
    for (std::size_t i = 0; i <= SoundThemes::maximumSounds; ++i)
        put("user/sound" + std::to_string(i) + ".wav");
    EXPECT_EQ(themes.sounds().size(), SoundThemes::maximumSounds);
    EXPECT_EQ(phone.log->lines().size(), 1U);
}

TEST_F(SoundThemesTest, missingDirectories_haveNoSounds) {
    EXPECT_THAT(sounds(), IsEmpty());
    EXPECT_THAT(phone.log->lines(), IsEmpty());
}

class SystemDirectories : public testing::Test {
  protected:
    void set(const char* name, const char* value) { value ? setenv(name, value, 1) : unsetenv(name); }
    void remember(const char* name) {
        const char* value = std::getenv(name);
        before_[name] = value ? std::optional<std::string>(value) : std::nullopt;
    }
    SystemDirectories() {
        for (const char* name : {"HOME", "XDG_DATA_HOME", "XDG_DATA_DIRS"}) remember(name);
    }
    ~SystemDirectories() override {
        for (const auto& [name, value] : before_) set(name.c_str(), value ? value->c_str() : nullptr);
    }

  private:
    std::map<std::string, std::optional<std::string>> before_;
};

TEST_F(SystemDirectories, variables_sayWhereTheThemesAre) {
    set("XDG_DATA_HOME", "/data");
    set("XDG_DATA_DIRS", "/one:relative::/two");
    EXPECT_THAT(SoundThemes::systemDirectories(), ElementsAre("/data/sounds", "/one/sounds", "/two/sounds"));
}

TEST_F(SystemDirectories, unsetVariables_haveTheirDefaults) {
    set("HOME", "/home/user");
    set("XDG_DATA_HOME", nullptr);
    set("XDG_DATA_DIRS", "");
    EXPECT_THAT(
        SoundThemes::systemDirectories(),
        ElementsAre("/home/user/.local/share/sounds", "/usr/local/share/sounds", "/usr/share/sounds"));
}

}  // namespace
