// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "platform/foundation/StringTable.h"

namespace platform {

/// Reads the text form of a localisation table: `"key" = "value";` with comments, in well-formed UTF-8.
class StringTableParser {
  public:
    static Result<StringTable> parse(std::string_view text);

  private:
    explicit StringTableParser(std::string_view text) : text_(text) {}

    Result<StringTable> parseEntries();
    Result<void> skipBlanksAndComments();
    Result<std::string> parseString(std::string_view what);
    /// Behind a backslash.
    Result<void> parseEscape(std::string& content);
    Result<void> parseUnicodeEscape(std::string& content);
    Result<char32_t> parseFourDigits(std::size_t start);
    Result<void> expect(char character, std::string_view what);
    bool atEnd() const { return position_ >= text_.size(); }
    bool startsWith(std::string_view mark) const { return text_.substr(position_).starts_with(mark); }
    std::unexpected<Error> errorAt(std::size_t position, std::string_view problem) const;
    /// What stands at the position, for an error.
    std::string found() const;

    std::string_view text_;
    std::size_t position_ = 0;
};

}  // namespace platform
