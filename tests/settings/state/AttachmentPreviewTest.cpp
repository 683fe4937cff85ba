// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "settings/state/AttachmentPreview.h"

namespace {

using platform::Data;
using settings::AttachmentPreview;

constexpr std::size_t longest = AttachmentPreview::longest;

AttachmentPreview previewOf(const std::string& text) {
    return AttachmentPreview::of(Data(text.begin(), text.end()));
}

TEST(AttachmentPreview, logOfTheLargestSize_isShownWhole) {
    const std::string log(longest, 'x');
    EXPECT_EQ(previewOf(log).text, log);
    EXPECT_EQ(previewOf(log).bytes, longest);
}

TEST(AttachmentPreview, longerOne_isItsBeginningWithoutHalfACharacter) {
    EXPECT_EQ(previewOf(std::string(longest + 9, 'x')).bytes, longest);
    // The last character would begin in the bytes that are shown and end beyond them.
    const AttachmentPreview cut = previewOf(std::string(longest - 2, 'x') + "静音");
    EXPECT_EQ(cut.text, std::string(longest - 2, 'x'));
    EXPECT_EQ(cut.bytes, longest - 2);
}

TEST(AttachmentPreview, bytesThatAreNoUTF8_leaveTheRestReadable) {
    const AttachmentPreview preview = previewOf("caf\xE9 au lait \xC3");
    EXPECT_EQ(preview.text, "caf\uFFFD au lait \uFFFD");
    EXPECT_EQ(preview.bytes, 14U);
}

TEST(AttachmentPreview, controlCharacters_areSeenAndLinesStayLines) {
    EXPECT_EQ(previewOf("\x1B[0m\tone\r\ntwo\x7F\x01").text, "\u241B[0m\tone\r\ntwo\u2421\u2401");
}

TEST(AttachmentPreview, zeroBytes_areSeenLikeOtherControlCharacters) {
    EXPECT_EQ(previewOf(std::string("cut\0\0off\n", 9)).text, "cut\u2400\u2400off\n");
    EXPECT_EQ(previewOf("").text, "");
}

}  // namespace
