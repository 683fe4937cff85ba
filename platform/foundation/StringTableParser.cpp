// SPDX-License-Identifier: MIT
#include "platform/foundation/StringTableParser.h"

#include <algorithm>
#include <charconv>

#include "platform/foundation/Unicode.h"

namespace platform {

namespace {

constexpr bool isBlank(char character) {
    return character == ' ' || (character >= '\t' && character <= '\r');
}

}  // namespace

Result<StringTable> StringTableParser::parse(std::string_view text) {
    StringTableParser parser(text);
    if (const auto invalid = firstInvalidUTF8(text)) {
        return parser.errorAt(*invalid, "expected UTF-8 at byte " + std::to_string(*invalid));
    }
    return parser.parseEntries();
}

Result<StringTable> StringTableParser::parseEntries() {
    StringTable table;
    for (;;) {
        if (auto skipped = skipBlanksAndComments(); !skipped) return std::unexpected(skipped.error());
        if (atEnd()) return table;
        Result<std::string> key = parseString("a key in quotation marks");
        if (!key) return std::unexpected(key.error());
        if (auto ok = expect('=', "\"=\" after the key"); !ok) return std::unexpected(ok.error());
        if (auto skipped = skipBlanksAndComments(); !skipped) return std::unexpected(skipped.error());
        Result<std::string> value = parseString("a value in quotation marks");
        if (!value) return std::unexpected(value.error());
        if (auto ok = expect(';', "\";\" after the value"); !ok) return std::unexpected(ok.error());
        table.insert_or_assign(*std::move(key), *std::move(value));
    }
}

Result<void> StringTableParser::skipBlanksAndComments() {
    while (!atEnd()) {
        if (isBlank(text_[position_])) {
            ++position_;
        } else if (startsWith("//")) {
            position_ = std::min(text_.find_first_of("\r\n", position_), text_.size());
        } else if (startsWith("/*")) {
            const std::size_t end = text_.find("*/", position_ + 2);
            if (end == std::string_view::npos)
                return errorAt(position_, "expected \"*/\" after this comment");
            position_ = end + 2;
        } else {
            break;
        }
    }
    return {};
}

Result<std::string> StringTableParser::parseString(std::string_view what) {
    const std::size_t start = position_;
    if (!startsWith("\"")) return errorAt(start, "expected " + std::string(what) + ", found " + found());
    ++position_;
    std::string content;
    while (!atEnd()) {
        const char character = text_[position_++];
        if (character == '"') return content;
        if (character != '\\') {
            content += character;
        } else if (auto escaped = parseEscape(content); !escaped) {
            return std::unexpected(escaped.error());
        }
    }
    return errorAt(start, "expected a closing quotation mark for the text that begins here");
}

Result<void> StringTableParser::parseEscape(std::string& content) {
    const std::size_t start = position_ - 1;
    const char escape = atEnd() ? '\0' : text_[position_++];
    switch (escape) {
        case '"':
        case '\\':
            content += escape;
            return {};
        case 'n':
            content += '\n';
            return {};
        case 't':
            content += '\t';
            return {};
        case 'r':
            content += '\r';
            return {};
        case 'U':
            return parseUnicodeEscape(content);
        default:
            return errorAt(start, R"(expected one of \" \\ \n \t \r \U after the backslash)");
    }
}

Result<void> StringTableParser::parseUnicodeEscape(std::string& content) {
    const std::size_t start = position_ - 2;
    Result<char32_t> unit = parseFourDigits(start);
    if (!unit) return std::unexpected(unit.error());
    if (isHighSurrogate(*unit) && startsWith("\\U")) {
        position_ += 2;
        const Result<char32_t> low = parseFourDigits(start);
        if (!low) return std::unexpected(low.error());
        if (!isLowSurrogate(*low)) return errorAt(start, "expected both halves of a surrogate pair");
        unit = combinedSurrogates(*unit, *low);
    }
    if (isSurrogate(*unit)) return errorAt(start, "expected both halves of a surrogate pair");
    appendUTF8(content, *unit);
    return {};
}

Result<char32_t> StringTableParser::parseFourDigits(std::size_t start) {
    const std::string_view digits = text_.substr(position_, 4);
    std::uint32_t unit = 0;
    const char* const end = digits.data() + digits.size();
    const auto parsed = std::from_chars(digits.data(), end, unit, 16);
    if (digits.size() != 4 || parsed.ec != std::errc() || parsed.ptr != end) {
        return errorAt(start, "expected four hexadecimal digits after \\U");
    }
    position_ += 4;
    return unit;
}

Result<void> StringTableParser::expect(char character, std::string_view what) {
    if (auto skipped = skipBlanksAndComments(); !skipped) return skipped;
    if (atEnd() || text_[position_] != character) {
        return errorAt(position_, "expected " + std::string(what) + ", found " + found());
    }
    ++position_;
    return {};
}

std::unexpected<Error> StringTableParser::errorAt(std::size_t position, std::string_view problem) const {
    const auto line = 1 + std::ranges::count(text_.substr(0, position), '\n');
    return failure("The string table is damaged at line " + std::to_string(line) + ": " +
                   std::string(problem) + ".");
}

std::string StringTableParser::found() const {
    const auto character = decodeUTF8(text_, position_);
    if (!character) return "the end";
    if (character->codePoint < 0x20) return "a control character";
    return "\"" + std::string(text_.substr(position_, character->length)) + "\"";
}

}  // namespace platform
