// SPDX-License-Identifier: MIT
#include "platform/foundation/XMLScanner.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

#include "platform/foundation/Unicode.h"
#include "platform/foundation/XMLCharacters.h"

namespace platform {

namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
constexpr std::size_t longestReference = 12;

std::string lowercase(std::string_view text) {
    std::string lower(text);
    std::ranges::transform(lower, lower.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? char(c + 32) : c; });
    return lower;
}

// Every line break is read as a line feed, as XML says.
void appendWithPlainLineBreaks(std::string& text, std::string_view piece) {
    if (!piece.contains('\r')) {
        text += piece;
        return;
    }
    for (std::size_t i = 0; i < piece.size(); ++i) {
        if (piece[i] != '\r') {
            text += piece[i];
        } else if (i + 1 == piece.size() || piece[i + 1] != '\n') {
            text += '\n';
        }
    }
}

/// A set of ASCII characters. Tags and texts are short: one look for each character is faster than a search
/// for each of the set.
class Characters {
  public:
    explicit constexpr Characters(std::string_view characters) {
        for (const char character : characters) isIn_[static_cast<unsigned char>(character)] = true;
    }
    /// The place of the first of them from `start` on; the text's end without any.
    constexpr std::size_t firstIn(std::string_view text, std::size_t start) const {
        while (start < text.size() && !isIn_[static_cast<unsigned char>(text[start])]) ++start;
        return start;
    }

  private:
    std::array<bool, 256> isIn_{};
};

constexpr Characters endsOfName(" \t\r\n/>=<\"'&");
constexpr Characters endsOfText("<&");

}  // namespace

XMLScanner::XMLScanner(std::string_view document) : document_(document) {
    if (document_.starts_with(byteOrderMark)) position_ = byteOrderMark.size();
}

Result<XMLScanner::Token> XMLScanner::next() {
    if (!isChecked_) {
        if (auto checked = checkCharacters(); !checked) return std::unexpected(checked.error());
        isChecked_ = true;
    }
    if (std::exchange(hasPendingEnd_, false)) return Token{Kind::EndTag, std::move(emptyElement_), position_};
    while (position_ < document_.size()) {
        Result<void> skipped;
        if (document_[position_] != '<') return scanText();
        switch (position_ + 1 < document_.size() ? document_[position_ + 1] : '\0') {
            case '/':
                return scanEndTag();
            case '?':
                skipped = skipInstruction();
                break;
            case '!':
                if (startsWith("<![CDATA[")) return scanCharacterData();
                skipped = startsWith("<!--") ? skipComment() : skipDocumentType();
                break;
            default:
                return scanStartTag();
        }
        if (!skipped) return std::unexpected(skipped.error());
    }
    return Token{Kind::End, {}, document_.size()};
}

std::unexpected<Error> XMLScanner::errorAt(std::size_t position, std::string_view problem) const {
    const auto before = document_.substr(0, position);
    const auto line = 1 + std::ranges::count(before, '\n');
    return failure("The XML property list is damaged at line " + std::to_string(line) + ": " +
                   std::string(problem) + ".");
}

Result<void> XMLScanner::checkCharacters() {
    const auto invalid = firstInvalidXML(document_);
    if (!invalid) return {};
    return errorAt(*invalid,
                   "byte " + std::to_string(*invalid) + " begins no UTF-8 character that XML allows");
}

Result<void> XMLScanner::skipInstruction() {
    const std::size_t start = position_;
    if (auto moved = moveBehind("?>", start + 2, "a processing instruction"); !moved) return moved;
    const std::string_view instruction = document_.substr(start, position_ - start);
    if (!instruction.starts_with("<?xml ")) return {};
    constexpr std::string_view key = "encoding=";
    const std::size_t encoding = instruction.find(key);
    if (encoding == std::string_view::npos) return {};
    const std::size_t open = encoding + key.size();
    const std::size_t close = instruction.find(instruction[open], open + 1);
    if (close == std::string_view::npos) return errorAt(start, "the declaration's encoding is not quoted");
    const std::string name = lowercase(instruction.substr(open + 1, close - open - 1));
    if (name == "utf-8" || name == "us-ascii" || name == "ascii") return {};
    return errorAt(start, "the encoding \"" + name + "\" is not supported, only UTF-8 is");
}

Result<void> XMLScanner::skipDocumentType() {
    const std::size_t start = position_;
    if (inRoot_ || !startsWith("<!DOCTYPE")) return errorAt(start, "a declaration stands where none may");
    char quote = '\0';
    for (; position_ < document_.size(); ++position_) {
        const char character = document_[position_];
        if (quote != '\0') {
            if (character == quote) quote = '\0';
        } else if (character == '"' || character == '\'') {
            quote = character;
        } else if (character == '[') {
            return errorAt(position_, "the document type defines entities or elements of its own");
        } else if (character == '>') {
            ++position_;
            return {};
        }
    }
    return errorAt(start, "the document type does not end");
}

Result<void> XMLScanner::skipComment() {
    return moveBehind("-->", position_ + 4, "a comment");
}

Result<XMLScanner::Token> XMLScanner::scanStartTag() {
    const std::size_t start = position_++;
    inRoot_ = true;
    Token token{Kind::StartTag, scanName(), start};
    if (token.text.empty()) return errorAt(start, "a \"<\" begins no tag");
    for (;;) {
        skipBlanks();
        if (isAt('>')) {
            ++position_;
            return token;
        }
        if (startsWith("/>")) {
            position_ += 2;
            emptyElement_ = token.text;
            hasPendingEnd_ = true;
            return token;
        }
        if (auto skipped = skipAttribute(); !skipped) return std::unexpected(skipped.error());
    }
}

Result<XMLScanner::Token> XMLScanner::scanEndTag() {
    const std::size_t start = position_;
    position_ += 2;
    Token token{Kind::EndTag, scanName(), start};
    skipBlanks();
    if (!isAt('>')) return errorAt(start, "the end tag </" + token.text + " does not end");
    ++position_;
    return token;
}

Result<XMLScanner::Token> XMLScanner::scanCharacterData() {
    constexpr std::string_view open = "<![CDATA[";
    constexpr std::string_view close = "]]>";
    const std::size_t start = position_;
    if (auto moved = moveBehind(close, start + open.size(), "a CDATA section"); !moved) {
        return std::unexpected(moved.error());
    }
    Token token{Kind::Text, {}, start};
    const std::size_t first = start + open.size();
    appendWithPlainLineBreaks(token.text, document_.substr(first, position_ - close.size() - first));
    return token;
}

Result<XMLScanner::Token> XMLScanner::scanText() {
    Token token{Kind::Text, {}, position_};
    while (position_ < document_.size() && document_[position_] != '<') {
        if (document_[position_] == '&') {
            if (auto appended = appendReference(token.text); !appended)
                return std::unexpected(appended.error());
            continue;
        }
        const std::size_t end = endsOfText.firstIn(document_, position_);
        appendWithPlainLineBreaks(token.text, document_.substr(position_, end - position_));
        position_ = end;
    }
    return token;
}

Result<void> XMLScanner::skipAttribute() {
    const std::size_t start = position_;
    const std::string name = scanName();
    if (name.empty()) return errorAt(start, "a tag does not end");
    skipBlanks();
    if (!startsWith("=")) return errorAt(start, "the attribute \"" + name + "\" has no value");
    ++position_;
    skipBlanks();
    if (!startsWith("\"") && !startsWith("'")) {
        return errorAt(start, "the value of the attribute \"" + name + "\" is not quoted");
    }
    return moveBehind(document_.substr(position_, 1), position_ + 1, "an attribute's value");
}

Result<void> XMLScanner::appendReference(std::string& text) {
    const std::size_t start = position_;
    const std::size_t length = document_.substr(start, longestReference).find(';');
    if (length == std::string_view::npos) return errorAt(start, "an \"&\" begins no reference");
    const std::string_view name = document_.substr(start + 1, length - 1);
    position_ = start + length + 1;

    constexpr std::array<std::pair<std::string_view, char>, 5> entities{
        {{"lt", '<'}, {"gt", '>'}, {"amp", '&'}, {"quot", '"'}, {"apos", '\''}}};
    for (const auto& [entity, character] : entities) {
        if (name != entity) continue;
        text += character;
        return {};
    }
    if (!name.starts_with('#')) return errorAt(start, "the entity &" + std::string(name) + "; is unknown");

    const bool isHexadecimal = name.starts_with("#x");
    const std::string_view digits = name.substr(isHexadecimal ? 2 : 1);
    std::uint32_t codePoint = 0;
    const char* const end = digits.data() + digits.size();
    const auto parsed = std::from_chars(digits.data(), end, codePoint, isHexadecimal ? 16 : 10);
    if (parsed.ec != std::errc() || parsed.ptr != end || !isXMLCharacter(codePoint)) {
        return errorAt(start, "the reference &" + std::string(name) + "; names no character that XML allows");
    }
    appendUTF8(text, codePoint);
    return {};
}

std::string XMLScanner::scanName() {
    const std::size_t start = position_;
    position_ = endsOfName.firstIn(document_, start);
    return std::string(document_.substr(start, position_ - start));
}

void XMLScanner::skipBlanks() {
    while (position_ < document_.size() && isXMLBlank(document_[position_])) ++position_;
}

Result<void> XMLScanner::moveBehind(std::string_view mark, std::size_t start, std::string_view what) {
    const std::size_t found = document_.find(mark, start);
    if (found == std::string_view::npos) return errorAt(position_, std::string(what) + " does not end");
    position_ = found + mark.size();
    return {};
}

}  // namespace platform
