// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/foundation/BinaryListBuilder.h"
#include "platform/foundation/XMLScanner.h"

namespace quietrix {

/// Makes a large XML property list into a binary one without ever holding a tree of all its values, which
/// would need many times the bytes: the root's entries, and the elements of arrays among them, are converted
/// a few at a time.
class LargeXMLList {
  public:
    /// The binary list's bytes, for a document whose root is a dictionary; anything else is an error, and so
    /// is an entry or an element that alone is a large part of the document.
    static platform::Result<platform::Data> toBinary(const platform::Data& document);

  private:
    using Object = platform::BinaryListBuilder::Object;
    using Token = platform::XMLScanner::Token;

    explicit LargeXMLList(std::string_view document);

    platform::Result<platform::Data> convert();
    platform::Result<void> convertEntry();
    platform::Result<Object> convertArray();
    /// Puts the element that begins with the tag to those that wait, and converts them when they are many.
    platform::Result<void> take(const Token& start, std::vector<Object>& objects);
    platform::Result<void> flush(std::vector<Object>& objects);
    /// Moves behind the element.
    platform::Result<void> skip(const Token& start);
    /// The next tag, and what is read over before it.
    platform::Result<Token> nextTag();
    platform::Result<Token> expect(platform::XMLScanner::Kind kind, std::string_view name);

    std::string_view document_;
    platform::XMLScanner scanner_;
    platform::BinaryListBuilder builder_;
    /// Elements side by side that are still text.
    std::string waiting_;
    std::vector<platform::BinaryList::Pair> entries_;
    std::vector<std::string> keys_;
};

}  // namespace quietrix
