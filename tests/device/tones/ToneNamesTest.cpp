// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "device/tones/ToneNames.h"

namespace {

using device::toneName;
using device::toneNames;
using testing::ElementsAre;
using testing::Pair;

TEST(ToneNames, soundsOfThemes_areSpelledForPeople) {
    EXPECT_EQ(toneName("message-new-instant"), "Message New Instant");
    EXPECT_EQ(toneName("bell"), "Bell");
    EXPECT_EQ(toneName("audio-channel-front-left"), "Audio Channel Front Left");
}

TEST(ToneNames, otherFiles_keepTheirSpelling) {
    EXPECT_EQ(toneName("My Ringtone (2)"), "My Ringtone (2)");
    EXPECT_EQ(toneName("doorbell_2.final"), "Doorbell_2.final");
    EXPECT_EQ(toneName("élan"), "élan");
    EXPECT_EQ(toneName("\xFFx"), "\\xFFx");
}

TEST(ToneNames, soundsOfOneName_areToldApart) {
    EXPECT_THAT(toneNames({"Chord", "chord", "ring"}),
                ElementsAre(Pair("Chord", "Chord"), Pair("Chord (chord)", "chord"), Pair("Ring", "ring")));
    EXPECT_THAT(
        toneNames({"new message", "New-Message", "new-message"}),
        ElementsAre(Pair("New Message", "New-Message"), Pair("New Message (new message)", "new message"),
                    Pair("New Message (new-message)", "new-message")));
}

TEST(ToneNames, soundCalledLikeANameMadeUp_isToldApartToo) {
    EXPECT_THAT(toneNames({"chord", "Chord", "Chord (chord)"}),
                ElementsAre(Pair("Chord", "Chord"), Pair("Chord (chord)", "Chord (chord)"),
                            Pair("Chord (chord) (chord)", "chord")));
}

TEST(ToneNames, orderOfTheSounds_doesNotMatter) {
    EXPECT_EQ(toneNames({"a-b", "A-B", "a b"}), toneNames({"a b", "A-B", "a-b"}));
}

}  // namespace
