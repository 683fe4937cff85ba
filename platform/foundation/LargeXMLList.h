// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/foundation/BinaryListBuilder.h"
#include "platform/foundation/XMLScanner.h"

namespace platform {

/// Makes a large XML property list into a binary one without ever holding a tree of all its values, which
/// would need many times the bytes: the root's entries, and the elements of arrays among them, are converted
/// a few at a time.
class LargeXMLList {
  public:
    /// The binary list's bytes, for a document whose root is a dictionary; anything else is an error, and so
    /// is an entry or an element that alone is a large part of the document.
    static Result<Data> toBinary(const Data& document);

  private:
    using Object = BinaryListBuilder::Object;
    using Token = XMLScanner::Token;

    explicit LargeXMLList(std::string_view document);

    Result<Data> convert();
    Result<void> convertEntry();
    Result<Object> convertArray();
    /// Puts the element that begins with the tag to those that wait, and converts them when they are many.
    Result<void> take(const Token& start, std::vector<Object>& objects);
    Result<void> flush(std::vector<Object>& objects);
    /// Moves behind the element.
    Result<void> skip(const Token& start);
    /// The next tag, and what is read over before it.
    Result<Token> nextTag();
    Result<Token> expect(XMLScanner::Kind kind, std::string_view name);

    std::string_view document_;
    XMLScanner scanner_;
    BinaryListBuilder builder_;
    /// Elements side by side that are still text.
    std::string waiting_;
    std::vector<BinaryList::Pair> entries_;
    std::vector<std::string> keys_;
};

}  // namespace platform
