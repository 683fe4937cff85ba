// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

namespace settings {

/// About how wide one line of the text is in the system font of that size, in points: by the widths that
/// Latin letters have in a common sans serif type, and one em for East Asian ones. Good to a few hundredths,
/// and the same on every machine, whatever fonts it has.
double textWidth(std::string_view text, double fontSize);

/// How many lines the text takes at that width, broken at blanks, and within words that are wider. At
/// least 1.
int linesOfText(std::string_view text, double fontSize, double width);

/// The height of one line, in points.
double lineHeight(double fontSize);

}  // namespace settings
