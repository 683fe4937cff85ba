// SPDX-License-Identifier: MIT
#include "settings/checking/TextWidth.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

namespace settings {

namespace {

/// From the blank to "~", in thousandths of the font's size.
constexpr std::array<int, 95> latin{
    278, 278, 355, 556, 556, 889, 667, 191, 333, 333, 389, 584, 278, 333,  278, 278, 556, 556, 556,
    556, 556, 556, 556, 556, 556, 556, 278, 278, 584, 584, 584, 556, 1015, 667, 667, 722, 722, 667,
    611, 778, 722, 278, 500, 667, 556, 833, 722, 778, 667, 778, 722, 667,  611, 722, 667, 944, 667,
    667, 611, 278, 278, 278, 469, 556, 333, 556, 556, 500, 556, 556, 278,  556, 556, 222, 222, 500,
    222, 833, 556, 556, 556, 556, 333, 500, 278, 556, 500, 722, 500, 500,  500, 334, 260, 334, 584};
constexpr int otherLetter = 556;
constexpr int wholeEm = 1000;

bool isMark(char32_t letter) {
    return (letter >= 0x300 && letter < 0x370) || (letter >= 0x64B && letter < 0x660) ||
           (letter >= 0x200B && letter < 0x2010) || (letter >= 0x202A && letter < 0x202F) ||
           (letter >= 0xFE00 && letter < 0xFE10);
}

int widthOfLetter(char32_t letter) {
    if (letter < ' ' || isMark(letter)) return 0;
    if (letter <= '~') return latin[letter - ' '];
    return letter >= 0x2E80 && letter < 0xFB00 ? wholeEm : otherLetter;
}

/// Takes the first letter off the text.
char32_t takeLetter(std::string_view& text) {
    const auto first = static_cast<unsigned char>(text.front());
    std::size_t length = 1;
    char32_t letter = first;
    if (first >= 0xF0) {
        length = 4;
        letter = first & 0x07U;
    } else if (first >= 0xE0) {
        length = 3;
        letter = first & 0x0FU;
    } else if (first >= 0xC0) {
        length = 2;
        letter = first & 0x1FU;
    }
    length = std::min(length, text.size());
    for (std::size_t i = 1; i < length; ++i)
        letter = (letter << 6U) | (static_cast<unsigned char>(text[i]) & 0x3FU);
    text.remove_prefix(length);
    return letter;
}

}  // namespace

double textWidth(std::string_view text, double fontSize) {
    double thousandths = 0;
    while (!text.empty()) thousandths += widthOfLetter(takeLetter(text));
    return thousandths * fontSize / 1000;
}

int linesOfText(std::string_view text, double fontSize, double width) {
    int lines = 1;
    double used = 0;
    const double blank = textWidth(" ", fontSize);
    while (!text.empty()) {
        const std::size_t end = text.find_first_of(" \n");
        const std::string_view word = text.substr(0, end);
        const bool endsLine = end != std::string_view::npos && text[end] == '\n';
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        const double wide = textWidth(word, fontSize);
        if (used > 0 && used + blank + wide > width) {
            ++lines;
            used = 0;
        }
        used += (used > 0 ? blank : 0) + wide;
        // A word that is wider than a whole line is broken wherever the line ends; East Asian text is one
        // such.
        if (width > 0 && used > width) {
            const int more = static_cast<int>(std::ceil(used / width)) - 1;
            lines += more;
            used -= more * width;
        }
        if (endsLine) {
            ++lines;
            used = 0;
        }
    }
    return lines;
}

double lineHeight(double fontSize) {
    return fontSize * 1.2;
}

}  // namespace settings
