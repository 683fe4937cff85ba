// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "device/tones/SoundThemeIndex.h"
#include "tests/doubles/Required.h"

namespace {

using device::SoundThemeIndex;
using doubles::errorOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

SoundThemeIndex parsed(const std::string& text) {
    const auto index = SoundThemeIndex::parse(text);
    EXPECT_TRUE(index) << index.error().localizedDescription;
    return index.value_or(SoundThemeIndex());
}

TEST(SoundThemeIndex, lists_areTakenInTheirOrder) {
    const SoundThemeIndex index = parsed(
        "# a comment\n[Sound Theme]\nName=Sample\nDirectories= stereo ,surround/5.1,\nInherits=b,a\n"
        "[stereo]\nOutputProfile=stereo\n");
    EXPECT_THAT(index.directories, ElementsAre("stereo", "surround/5.1"));
    EXPECT_THAT(index.inherits, ElementsAre("b", "a"));
    EXPECT_FALSE(index.hidden);
    EXPECT_TRUE(parsed("[Sound Theme]\nHidden=true\n").hidden);
}

TEST(SoundThemeIndex, byteOrderMark_isPassedOver) {
    EXPECT_THAT(parsed("\xEF\xBB\xBF[Sound Theme]\nDirectories=stereo\n").directories, ElementsAre("stereo"));
    EXPECT_FALSE(SoundThemeIndex::parse("\xEF\xBB\xBF\xEF\xBB\xBF[Sound Theme]\n"));
}

TEST(SoundThemeIndex, namesThatLeadOut_areDropped) {
    const SoundThemeIndex index = parsed(
        "[Sound "
        "Theme]\nDirectories=/etc,..,../other,stereo/../..,a//b,.,ok/fine\nInherits=..,a/b,/x,.,fine\n");
    EXPECT_THAT(index.directories, ElementsAre("ok/fine"));
    EXPECT_THAT(index.inherits, ElementsAre("fine"));
}

TEST(SoundThemeIndex, longLists_areCut) {
    std::string text = "[Sound Theme]\nDirectories=";
    for (int i = 0; i < 1000; ++i) text += "d,";
    EXPECT_EQ(parsed(text).directories.size(), SoundThemeIndex::maximumNames);
    EXPECT_THAT(parsed("[Sound Theme]\n").directories, IsEmpty());
}

TEST(SoundThemeIndex, otherFiles_areRefused) {
    EXPECT_THAT(errorOf(SoundThemeIndex::parse("")), HasSubstr("no group \"Sound Theme\""));
    EXPECT_FALSE(SoundThemeIndex::parse("[Icon Theme]\nDirectories=a\n"));
    EXPECT_THAT(errorOf(SoundThemeIndex::parse("nonsense")), HasSubstr("is no sound theme: "));
    EXPECT_FALSE(SoundThemeIndex::parse("\xFF\xFE[Sound Theme]\n"));
}

}  // namespace
