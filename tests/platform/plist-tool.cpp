// SPDX-License-Identifier: MIT
// Converts the property list on standard input into the named format, for the exchange with other programs.
#include <iostream>
#include <iterator>
#include <string_view>

#include "platform/foundation/PropertyList.h"

int main(int argc, char** argv) {
    using platform::PropertyListSerialization;
    const std::string_view wanted = argc == 2 ? argv[1] : "";
    if (wanted != "binary" && wanted != "xml") {
        std::cerr << "usage: plist-tool binary|xml\n";
        return 2;
    }
    const platform::Data input{std::istreambuf_iterator<char>(std::cin), {}};
    const auto value = PropertyListSerialization::propertyListWithData(input);
    if (!value) {
        std::cerr << value.error().localizedDescription << '\n';
        return 1;
    }
    const auto output = PropertyListSerialization::dataWithPropertyList(
        *value, wanted == "xml" ? platform::PropertyListFormat::XML : platform::PropertyListFormat::Binary);
    if (!output) {
        std::cerr << output.error().localizedDescription << '\n';
        return 1;
    }
    std::cout.write(reinterpret_cast<const char*>(output->data()),
                    static_cast<std::streamsize>(output->size()));
    return std::cout.flush() ? 0 : 1;
}
