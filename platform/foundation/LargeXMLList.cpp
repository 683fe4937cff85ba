// SPDX-License-Identifier: MIT
#include "platform/foundation/LargeXMLList.h"

#include <algorithm>

#include "platform/foundation/PropertyList.h"

namespace platform {

using Kind = XMLScanner::Kind;

namespace {

/// So much text is converted in one piece. The values made of it take some ten times as much for a moment.
constexpr std::size_t pieceSize = std::size_t{1} << 18;
/// The part of a document that one element may be, as it cannot be converted in parts.
constexpr std::size_t largestShare = 16;

}  // namespace

Result<Data> LargeXMLList::toBinary(const Data& document) {
    return LargeXMLList({reinterpret_cast<const char*>(document.data()), document.size()}).convert();
}

LargeXMLList::LargeXMLList(std::string_view document) : document_(document), scanner_(document) {}

Result<Data> LargeXMLList::convert() {
    for (const std::string_view name : {"plist", "dict"}) {
        if (const auto tag = expect(Kind::StartTag, name); !tag) return std::unexpected(tag.error());
    }
    for (;;) {
        const auto tag = nextTag();
        if (!tag) return std::unexpected(tag.error());
        if (tag->kind == Kind::EndTag && tag->text == "dict") break;
        if (tag->kind != Kind::StartTag || tag->text != "key")
            return scanner_.errorAt(tag->position, "<key> or </dict> is expected");
        const auto entry = convertEntry();
        if (!entry) return std::unexpected(entry.error());
    }
    if (const auto tag = expect(Kind::EndTag, "plist"); !tag) return std::unexpected(tag.error());
    if (const auto tag = expect(Kind::End, ""); !tag) return std::unexpected(tag.error());
    const Object root = builder_.addDictionary(entries_);
    return std::move(builder_).finish(root);
}

Result<void> LargeXMLList::convertEntry() {
    std::string key;
    for (;;) {
        const auto token = scanner_.next();
        if (!token) return std::unexpected(token.error());
        if (token->kind == Kind::EndTag && token->text == "key") break;
        if (token->kind != Kind::Text) return scanner_.errorAt(token->position, "a key is text alone");
        key += token->text;
    }
    const auto tag = nextTag();
    if (!tag) return std::unexpected(tag.error());
    if (tag->kind != Kind::StartTag) return scanner_.errorAt(tag->position, "a key has no value");
    Result<Object> value = 0;
    if (tag->text == "array") {
        value = convertArray();
    } else {
        std::vector<Object> objects;
        Result<void> taken = take(*tag, objects);
        if (taken) taken = flush(objects);
        if (!taken) return taken;
        value = objects.front();
    }
    if (!value) return std::unexpected(value.error());
    // As in every dictionary, the last one counts of a key that comes twice.
    const auto known = std::ranges::find(keys_, key);
    if (known != keys_.end()) {
        entries_[static_cast<std::size_t>(known - keys_.begin())].value = *value;
        return {};
    }
    const Result<Object> name = builder_.add(Value(key));
    if (!name) return std::unexpected(name.error());
    entries_.push_back({*name, *value});
    keys_.push_back(std::move(key));
    return {};
}

Result<LargeXMLList::Object> LargeXMLList::convertArray() {
    std::vector<Object> objects;
    for (;;) {
        const auto tag = nextTag();
        if (!tag) return std::unexpected(tag.error());
        if (tag->kind == Kind::EndTag && tag->text == "array") break;
        if (tag->kind != Kind::StartTag) return scanner_.errorAt(tag->position, "</array> is expected");
        if (const auto taken = take(*tag, objects); !taken) return std::unexpected(taken.error());
    }
    if (const auto flushed = flush(objects); !flushed) return std::unexpected(flushed.error());
    return builder_.addArray(objects);
}

Result<void> LargeXMLList::take(const Token& start, std::vector<Object>& objects) {
    if (const auto skipped = skip(start); !skipped) return skipped;
    const std::string_view element = document_.substr(start.position, scanner_.position() - start.position);
    if (element.size() > std::max(document_.size() / largestShare, pieceSize)) {
        return scanner_.errorAt(start.position, "one element has " + std::to_string(element.size()) +
                                                    " bytes, too many for a file of this size");
    }
    if (waiting_.size() + element.size() > pieceSize) {
        if (const auto flushed = flush(objects); !flushed) return flushed;
    }
    waiting_ += element;
    return {};
}

Result<void> LargeXMLList::flush(std::vector<Object>& objects) {
    if (waiting_.empty()) return {};
    Data piece;
    for (const std::string_view part : {std::string_view("<plist><array>"), std::string_view(waiting_),
                                        std::string_view("</array></plist>")})
        piece.insert(piece.end(), part.begin(), part.end());
    waiting_.clear();
    const auto values = PropertyListSerialization::propertyListWithData(piece);
    const std::string place = "Shortly before byte " + std::to_string(scanner_.position()) + ": ";
    if (!values) return failure(place + values.error().localizedDescription);
    const auto elements = builder_.addElements(*values);
    if (!elements) return failure(place + elements.error().localizedDescription);
    objects.insert(objects.end(), elements->begin(), elements->end());
    return {};
}

Result<void> LargeXMLList::skip(const Token& start) {
    int depth = 1;
    while (depth > 0) {
        const auto token = scanner_.next();
        if (!token) return std::unexpected(token.error());
        if (token->kind == Kind::End)
            return scanner_.errorAt(start.position, "<" + start.text + "> is never closed");
        if (token->kind == Kind::StartTag) ++depth;
        if (token->kind == Kind::EndTag) --depth;
    }
    return {};
}

Result<LargeXMLList::Token> LargeXMLList::nextTag() {
    for (;;) {
        Result<Token> token = scanner_.next();
        if (!token || token->kind != Kind::Text) return token;
        const bool isBlank = token->text.find_first_not_of(" \t\r\n") == std::string::npos;
        if (!isBlank) return scanner_.errorAt(token->position, "text stands outside of any value");
    }
}

Result<LargeXMLList::Token> LargeXMLList::expect(Kind kind, std::string_view name) {
    Result<Token> tag = nextTag();
    if (!tag || (tag->kind == kind && tag->text == name)) return tag;
    if (kind == Kind::End) return scanner_.errorAt(tag->position, "something follows the end of <plist>");
    return scanner_.errorAt(tag->position, "<" + std::string(kind == Kind::EndTag ? "/" : "") +
                                               std::string(name) + "> is expected");
}

}  // namespace platform
