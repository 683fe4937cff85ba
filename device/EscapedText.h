// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace device {

/// Bytes that nobody promised to be UTF-8 (names of files, of networks) as valid UTF-8. Valid text stays as
/// it is, but for text that looks like the escape of something: "\x" with two capital hexadecimal digits. All
/// else has each invalid byte and each backslash as such an escape. Different bytes give different texts, so
/// the text can stand for the bytes.
std::string escapedText(std::string_view bytes);

/// The same for a terminal, in one line: control characters, line breaks and what changes the direction of
/// the text that follows are escapes too.
std::string visibleText(std::string_view bytes);

/// Whether there is a character in the text that would be an escape for that.
bool movesText(std::string_view text);

/// The first between quotation marks, as sentences name a file or a tone.
std::string quotedText(std::string_view bytes);

}  // namespace device
