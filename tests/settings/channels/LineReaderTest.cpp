// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <string>

#include "settings/channels/LineReader.h"

namespace {

using settings::LineReader;

std::vector<std::string> texts(const std::vector<LineReader::Line>& lines) {
    std::vector<std::string> texts;
    for (const auto& line : lines) texts.push_back(line.oversized ? "(oversized)" : line.text);
    return texts;
}

using Texts = std::vector<std::string>;

TEST(LineReader, linesInPieces_areJoined) {
    LineReader reader(10);
    EXPECT_EQ(texts(reader.feed("ab")), Texts{});
    EXPECT_EQ(texts(reader.feed("c\nd\n\ne")), (Texts{"abc", "d", ""}));
    EXPECT_EQ(texts(reader.feed("f\n")), Texts{"ef"});
    EXPECT_FALSE(reader.finish().has_value());
}

TEST(LineReader, oversizedLine_isReportedOnceAtItsEnd) {
    LineReader reader(4);
    EXPECT_EQ(texts(reader.feed("1234\n123")), Texts{"1234"});
    EXPECT_EQ(texts(reader.feed("45")), Texts{});
    EXPECT_EQ(texts(reader.feed(std::string(1000, 'x'))), Texts{});
    EXPECT_EQ(texts(reader.feed("6\nok\n")), (Texts{"(oversized)", "ok"}));
}

TEST(LineReader, restBehindTheLastBreak_isALineAtTheEnd) {
    LineReader reader(4);
    reader.feed("a\nbc");
    EXPECT_EQ(reader.finish().value().text, "bc");
    EXPECT_FALSE(reader.finish().has_value());
    reader.feed("12345");
    EXPECT_TRUE(reader.finish().value().oversized);
}

}  // namespace
