// SPDX-License-Identifier: MIT
#include "platform/foundation/XMLPropertyListReader.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <limits>
#include <optional>
#include <utility>

#include "platform/foundation/Base64.h"
#include "platform/foundation/PropertyList.h"
#include "platform/foundation/XMLCharacters.h"

namespace platform {

namespace {

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && isXMLBlank(text.front())) text.remove_prefix(1);
    while (!text.empty() && isXMLBlank(text.back())) text.remove_suffix(1);
    return text;
}

template <class Number, class... Base>
std::optional<Number> parsed(std::string_view text, Base... base) {
    Number number{};
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number, base...);
    if (error != std::errc() || stop != end) return std::nullopt;
    return number;
}

std::optional<Value> integerFrom(std::string_view text) {
    text = trimmed(text);
    const bool isNegative = text.starts_with('-');
    if (isNegative || text.starts_with('+')) text.remove_prefix(1);
    const bool isHexadecimal = text.starts_with("0x") || text.starts_with("0X");
    if (isHexadecimal) text.remove_prefix(2);
    const auto magnitude = parsed<std::uint64_t>(text, isHexadecimal ? 16 : 10);
    if (!magnitude) return std::nullopt;
    if (!isNegative) return Value(*magnitude);
    constexpr std::uint64_t most = std::uint64_t{1} << 63;
    if (*magnitude > most) return std::nullopt;
    if (*magnitude == most) return Value(std::numeric_limits<std::int64_t>::min());
    return Value(-static_cast<std::int64_t>(*magnitude));
}

std::optional<Value> realFrom(std::string_view text) {
    text = trimmed(text);
    if (text.starts_with('+')) {
        text.remove_prefix(1);
        if (text.starts_with('-')) return std::nullopt;
    }
    if (const auto real = parsed<double>(text)) return Value(*real);
    return std::nullopt;
}

// Exactly "YYYY-MM-DDTHH:MM:SSZ".
std::optional<Value> dateFrom(std::string_view text) {
    text = trimmed(text);
    constexpr std::string_view shape = "dddd-dd-ddTdd:dd:ddZ";
    const bool fits = std::ranges::equal(text, shape, [](char character, char expected) {
        return expected == 'd' ? character >= '0' && character <= '9' : character == expected;
    });
    if (!fits) return std::nullopt;
    const auto part = [&](std::size_t offset, std::size_t count) {
        return *parsed<int>(text.substr(offset, count));
    };

    using namespace std::chrono;
    const year_month_day day(year(part(0, 4)), month(static_cast<unsigned>(part(5, 2))),
                             std::chrono::day(static_cast<unsigned>(part(8, 2))));
    if (!day.ok() || day.year() < year(1)) return std::nullopt;
    if (part(11, 2) > 23 || part(14, 2) > 59 || part(17, 2) > 59) return std::nullopt;
    const seconds time = hours(part(11, 2)) + minutes(part(14, 2)) + seconds(part(17, 2));
    const seconds sinceReference = sys_days(day) - sys_days(2001y / January / 1) + time;
    return Value(Date{static_cast<double>(sinceReference.count())});
}

}  // namespace

Result<Value> XMLPropertyListReader::read(const Data& data) {
    const std::string_view document(reinterpret_cast<const char*>(data.data()), data.size());
    return XMLPropertyListReader(document).readDocument();
}

Result<Value> XMLPropertyListReader::readDocument() {
    const auto root = nextTag();
    if (!root) return std::unexpected(root.error());
    if (root->kind != XMLScanner::Kind::StartTag || root->text != "plist") {
        return errorAt(*root, "the root element is not <plist>");
    }
    const auto first = nextTag();
    if (!first) return std::unexpected(first.error());
    if (first->kind != XMLScanner::Kind::StartTag) return errorAt(*first, "<plist> holds no value");
    Result<Value> value = readElement(*first, 0);
    if (!value) return value;

    const auto last = nextTag();
    if (!last) return std::unexpected(last.error());
    if (last->kind == XMLScanner::Kind::StartTag) return errorAt(*last, "<plist> holds more than one value");
    if (auto ended = expectEnd(*last, *root); !ended) return std::unexpected(ended.error());
    const auto behind = nextTag();
    if (!behind) return std::unexpected(behind.error());
    if (behind->kind != XMLScanner::Kind::End)
        return errorAt(*behind, "something follows the end of <plist>");
    return value;
}

Result<Value> XMLPropertyListReader::readElement(const Token& start, int level) {
    const std::string_view name = start.text;
    const bool isArray = name == "array";
    if (!isArray && name != "dict") return readScalar(start);
    if (level >= PropertyListSerialization::maximumDepth) {
        return errorAt(start, "containers nest more than " +
                                  std::to_string(PropertyListSerialization::maximumDepth) + " deep");
    }
    return isArray ? readArray(start, level + 1) : readDictionary(start, level + 1);
}

Result<Value> XMLPropertyListReader::readArray(const Token& start, int level) {
    Array elements;
    for (;;) {
        const auto tag = nextTag();
        if (!tag) return std::unexpected(tag.error());
        if (tag->kind != XMLScanner::Kind::StartTag) {
            if (auto ended = expectEnd(*tag, start); !ended) return std::unexpected(ended.error());
            return Value(std::move(elements));
        }
        Result<Value> element = readElement(*tag, level);
        if (!element) return element;
        elements.push_back(*std::move(element));
    }
}

Result<Value> XMLPropertyListReader::readDictionary(const Token& start, int level) {
    std::vector<Dictionary::Entry> entries;
    for (;;) {
        const auto tag = nextTag();
        if (!tag) return std::unexpected(tag.error());
        if (tag->kind != XMLScanner::Kind::StartTag) {
            if (auto ended = expectEnd(*tag, start); !ended) return std::unexpected(ended.error());
            return Value(Dictionary::ofEntries(std::move(entries)));
        }
        if (tag->text != "key") return errorAt(*tag, "<" + tag->text + "> stands where a <key> is expected");
        Result<std::string> key = textOf(*tag);
        if (!key) return std::unexpected(key.error());
        const auto valueTag = nextTag();
        if (!valueTag) return std::unexpected(valueTag.error());
        if (valueTag->kind != XMLScanner::Kind::StartTag) {
            return errorAt(*valueTag, "the key \"" + *key + "\" has no value");
        }
        Result<Value> value = readElement(*valueTag, level);
        if (!value) return value;
        entries.emplace_back(*std::move(key), *std::move(value));
    }
}

Result<Value> XMLPropertyListReader::readScalar(const Token& start) {
    // A view: comparing it looks at the length first.
    const std::string_view name = start.text;
    if (name == "true" || name == "false") return readTruth(start);
    const bool isKnown =
        name == "string" || name == "integer" || name == "real" || name == "date" || name == "data";
    if (!isKnown) return errorAt(start, "<" + start.text + "> is no property-list value");

    Result<std::string> text = textOf(start);
    if (!text) return std::unexpected(text.error());
    if (name == "string") return Value(*std::move(text));
    if (name == "integer") {
        if (auto integer = integerFrom(*text)) return *std::move(integer);
        return errorAt(start, "\"" + *text + "\" is no integer of 64 bits");
    }
    if (name == "real") {
        if (auto real = realFrom(*text)) return *std::move(real);
        return errorAt(start, "\"" + *text + "\" is no real number");
    }
    if (name == "date") {
        if (auto date = dateFrom(*text)) return *std::move(date);
        return errorAt(start, "\"" + *text + "\" is no date");
    }
    if (auto data = dataFromBase64(*text)) return Value(*std::move(data));
    return errorAt(start, "the data is no base64");
}

Result<Value> XMLPropertyListReader::readTruth(const Token& start) {
    const auto tag = nextTag();
    if (!tag) return std::unexpected(tag.error());
    if (auto ended = expectEnd(*tag, start); !ended) return std::unexpected(ended.error());
    return Value(start.text == "true");
}

Result<XMLPropertyListReader::Token> XMLPropertyListReader::nextTag() {
    for (;;) {
        Result<Token> token = scanner_.next();
        if (!token || token->kind != XMLScanner::Kind::Text) return token;
        if (!trimmed(token->text).empty()) return errorAt(*token, "text stands outside of any value");
    }
}

Result<std::string> XMLPropertyListReader::textOf(const Token& start) {
    std::string text;
    for (;;) {
        Result<Token> token = scanner_.next();
        if (!token) return std::unexpected(token.error());
        if (token->kind == XMLScanner::Kind::Text) {
            text += token->text;
            continue;
        }
        if (token->kind == XMLScanner::Kind::StartTag) {
            return errorAt(*token, "<" + token->text + "> stands inside <" + start.text + ">");
        }
        if (auto ended = expectEnd(*token, start); !ended) return std::unexpected(ended.error());
        return text;
    }
}

Result<void> XMLPropertyListReader::expectEnd(const Token& end, const Token& start) const {
    if (end.kind == XMLScanner::Kind::EndTag && end.text == start.text) return {};
    if (end.kind == XMLScanner::Kind::End) return errorAt(start, "<" + start.text + "> is never closed");
    if (end.kind == XMLScanner::Kind::StartTag) {
        return errorAt(end, "<" + end.text + "> stands inside <" + start.text + ">");
    }
    return errorAt(end, "<" + start.text + "> is closed by </" + end.text + ">");
}

}  // namespace platform
