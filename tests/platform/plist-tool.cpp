// SPDX-License-Identifier: MIT
// Converts property lists for the exchange with other programs, one request after the other until its input
// ends: a line "FORMAT LENGTH" and so many bytes are answered by a line "ok LENGTH" or "error LENGTH" and so
// many bytes.
#include <iostream>
#include <string>
#include <string_view>

#include "platform/foundation/PropertyList.h"

namespace {

using platform::Data;
using platform::PropertyListFormat;
using platform::PropertyListSerialization;

platform::Result<Data> converted(const Data& input, PropertyListFormat format) {
    const auto value = PropertyListSerialization::propertyListWithData(input);
    if (!value) return std::unexpected(value.error());
    return PropertyListSerialization::dataWithPropertyList(*value, format);
}

void answer(std::string_view outcome, std::string_view bytes) {
    std::cout << outcome << ' ' << bytes.size() << '\n' << bytes << std::flush;
}

}  // namespace

int main() {
    std::ios::sync_with_stdio(false);
    std::string format;
    std::size_t length = 0;
    while (std::cin >> format >> length) {
        Data input(length);
        std::cin.ignore(1).read(reinterpret_cast<char*>(input.data()), static_cast<std::streamsize>(length));
        if (!std::cin || (format != "binary" && format != "xml")) {
            std::cerr << "plist-tool: a request is \"binary\" or \"xml\", a length, and so many bytes\n";
            return 2;
        }
        const auto output =
            converted(input, format == "xml" ? PropertyListFormat::XML : PropertyListFormat::Binary);
        if (output) {
            answer("ok", {reinterpret_cast<const char*>(output->data()), output->size()});
        } else {
            answer("error", output.error().localizedDescription);
        }
    }
    return std::cout ? 0 : 1;
}
