// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "platform/foundation/Error.h"
#include "platform/foundation/Value.h"
#include "platform/foundation/XMLScanner.h"

namespace platform {

/// Reads an XML property list: one value inside the element `plist`. Integers are decimal or hexadecimal
/// ("0x…"), from the least signed to the greatest unsigned of 64 bits; dates are "YYYY-MM-DDTHH:MM:SSZ". A
/// key that comes twice in a dictionary takes its last value.
class XMLPropertyListReader {
  public:
    static Result<Value> read(const Data& data);

  private:
    using Token = XMLScanner::Token;

    explicit XMLPropertyListReader(std::string_view document) : scanner_(document) {}

    Result<Value> readDocument();
    Result<Value> readElement(const Token& start, int level);
    Result<Value> readArray(const Token& start, int level);
    Result<Value> readDictionary(const Token& start, int level);
    Result<Value> readScalar(const Token& start);
    Result<Value> readTruth(const Token& start);
    /// The next tag; nothing but blanks may stand before it.
    Result<Token> nextTag();
    /// The text of an element without child elements, up to its end tag.
    Result<std::string> textOf(const Token& start);
    Result<void> expectEnd(const Token& end, const Token& start) const;
    std::unexpected<Error> errorAt(const Token& token, std::string_view problem) const {
        return scanner_.errorAt(token.position, problem);
    }

    XMLScanner scanner_;
};

}  // namespace platform
