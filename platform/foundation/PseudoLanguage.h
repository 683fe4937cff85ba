// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace platform {

/// Languages that nobody speaks, in which every bundle has its texts: made from those of its development
/// region, longer, accented and in brackets, so that one sees what is not localised (plain), what has no
/// room, and, where it is written from the right, what is mirrored wrongly.
enum class PseudoLanguage {
    /// "en-XA".
    Accented,
    /// "ar-XB": the same, with its letters in the order of a script that is written from the right.
    RightToLeft
};

/// The one that a language tag means; empty for the tag of any other language. Any thread.
std::optional<PseudoLanguage> pseudoLanguageOfTag(std::string_view tag);

/// A text in that language, about two fifths longer. What a format puts values in for ("%@", "%1$d", "%%")
/// and line breaks stay as they are, as does all that is not written in Latin letters; a text of nothing but
/// blanks is the same in every language. UTF-8. Any thread.
std::string pseudoLocalized(std::string_view text, PseudoLanguage language);

}  // namespace platform
