// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "platform/foundation/Error.h"

namespace platform {

/// Takes an XML document apart into tags and text: no more of XML than property lists need. Comments,
/// processing instructions, attributes and the document type are read over; a document type that defines
/// anything of its own (entities above all) is refused. The document must be UTF-8. Errors name the line.
class XMLScanner {
  public:
    enum class Kind { StartTag, EndTag, Text, End };
    /// One piece of the text, with the place in bytes where it begins.
    struct Token {
        Kind kind = Kind::End;
        std::string text;  // a tag's name, or the text with its references resolved
        std::size_t position = 0;
    };

    /// The document must outlive the scanner.
    explicit XMLScanner(std::string_view document);

    /// An element without content (`<dict/>`) gives its start and its end. Text may come in several pieces.
    Result<Token> next();
    /// Right behind what was given last.
    std::size_t position() const { return position_; }
    std::unexpected<Error> errorAt(std::size_t position, std::string_view problem) const;

  private:
    Result<void> checkCharacters();
    Result<void> skipInstruction();
    Result<void> skipDocumentType();
    Result<void> skipComment();
    Result<Token> scanStartTag();
    Result<Token> scanEndTag();
    Result<Token> scanCharacterData();
    Result<Token> scanText();
    Result<void> skipAttribute();
    Result<void> appendReference(std::string& text);
    std::string scanName();
    void skipBlanks();
    /// Moves behind the next occurrence of the mark; fails when there is none.
    Result<void> moveBehind(std::string_view mark, std::size_t start, std::string_view what);
    bool isAt(char character) const {
        return position_ < document_.size() && document_[position_] == character;
    }
    bool startsWith(std::string_view mark) const { return document_.substr(position_).starts_with(mark); }

    std::string_view document_;
    std::size_t position_ = 0;
    std::string emptyElement_;  // the name of a `<name/>` whose end is still to be given
    bool hasPendingEnd_ = false;
    bool isChecked_ = false;
    bool inRoot_ = false;
};

}  // namespace platform
