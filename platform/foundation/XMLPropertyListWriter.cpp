// SPDX-License-Identifier: MIT
#include "platform/foundation/XMLPropertyListWriter.h"

#include "platform/foundation/Base64.h"
#include "platform/foundation/ValueDescription.h"

namespace platform {

namespace {

/// What stands for the character in a text; empty for one that stands for itself.
std::string_view escapeOf(char character) {
    switch (character) {
        case '<':
            return "&lt;";
        case '>':
            return "&gt;";
        case '&':
            return "&amp;";
        case '\r':
            // Written out, it would be read as a line feed.
            return "&#13;";
        default:
            return {};
    }
}

void appendEscaped(std::string& text, std::string_view content) {
    std::size_t begin = 0;
    for (std::size_t i = 0; i < content.size(); ++i) {
        const std::string_view escape = escapeOf(content[i]);
        if (escape.empty()) continue;
        text.append(content.substr(begin, i - begin)).append(escape);
        begin = i + 1;
    }
    text.append(content.substr(begin));
}

}  // namespace

Data XMLPropertyListWriter::write(const Value& value) {
    XMLPropertyListWriter writer;
    writer.text_ = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">\n";
    writer.add(value, 0);
    writer.text_ += "</plist>\n";
    return {writer.text_.begin(), writer.text_.end()};
}

void XMLPropertyListWriter::add(const Value& value, std::size_t level) {
    switch (value.type()) {
        case Value::Type::Boolean:
            indent(level);
            text_ += *value.boolean() ? "<true/>\n" : "<false/>\n";
            break;
        case Value::Type::Integer:
            addElement("integer", value.description(), level);
            break;
        case Value::Type::Real:
            addElement("real", shortestText(*value.real()), level);
            break;
        case Value::Type::String:
            addElement("string", *value.string(), level);
            break;
        case Value::Type::Date: {
            const DateText date = utcText(*value.date());
            addElement("date", date.day + "T" + date.time + "Z", level);
            break;
        }
        case Value::Type::Data:
            addElement("data", base64(*value.data()), level);
            break;
        case Value::Type::Array:
            addContainer("array", value, level);
            break;
        case Value::Type::Dictionary:
            addContainer("dict", value, level);
            break;
        case Value::Type::Nil:
        case Value::Type::Object:
            break;  // never found writable
    }
}

void XMLPropertyListWriter::addContainer(std::string_view name, const Value& value, std::size_t level) {
    const Array* elements = value.array();
    const Dictionary* entries = value.dictionary();
    indent(level);
    text_.append("<").append(name);
    if (elements != nullptr ? elements->empty() : entries->empty()) {
        text_ += "/>\n";
        return;
    }
    text_ += ">\n";
    if (elements != nullptr) {
        for (const Value& element : *elements) add(element, level + 1);
    } else {
        for (const auto& [key, element] : *entries) {
            addElement("key", key, level + 1);
            add(element, level + 1);
        }
    }
    indent(level);
    text_.append("</").append(name).append(">\n");
}

void XMLPropertyListWriter::addElement(std::string_view name, std::string_view text, std::size_t level) {
    indent(level);
    text_.append("<").append(name).append(">");
    appendEscaped(text_, text);
    text_.append("</").append(name).append(">\n");
}

}  // namespace platform
