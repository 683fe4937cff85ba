// SPDX-License-Identifier: MIT
// Whatever is read as a string table holds only well-formed texts and, written out again, reads back equal.
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "platform/foundation/StringTable.h"
#include "platform/foundation/Unicode.h"

using platform::Data;
using platform::StringTable;

namespace {

void require(bool holds, const char* what) {
    if (holds) return;
    std::fprintf(stderr, "broken: %s\n", what);
    std::abort();
}

void appendQuoted(std::string& text, const std::string& content) {
    text += '"';
    for (const char character : content) {
        if (character == '"' || character == '\\') text += '\\';
        text += character;
    }
    text += '"';
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const auto table = platform::parseStringTable(Data(bytes, bytes + size));
    if (!table) {
        require(!table.error().localizedDescription.empty(), "an error says something");
        return 0;
    }
    std::string text = "\n";
    for (const auto& [key, value] : *table) {
        require(!platform::firstInvalidUTF8(key) && !platform::firstInvalidUTF8(value), "texts are UTF-8");
        appendQuoted(text, key);
        text += " = ";
        appendQuoted(text, value);
        text += ";\n";
    }
    require(platform::parseStringTable(Data(text.begin(), text.end())) == table, "a table reads back equal");
    return 0;
}
