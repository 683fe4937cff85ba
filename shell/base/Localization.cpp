// SPDX-License-Identifier: MIT
#include "shell/base/Localization.h"

#include "platform/foundation/Bundle.h"

namespace quietrix {

std::string localized(std::string_view key) {
    const auto bundle = platform::Bundle::bundleWithPath(bundlePath);
    return bundle ? bundle->localizedStringForKey_value_table(key, {}, {}) : localizedInMainBundle(key);
}

std::string localizedInMainBundle(std::string_view key) {
    return platform::Bundle::mainBundle()->localizedStringForKey_value_table(key, "", {});
}

std::string stringWithFormat(std::string_view format, std::initializer_list<std::string_view> arguments) {
    std::string text;
    auto argument = arguments.begin();
    for (std::size_t at = 0; at < format.size();) {
        if (format.substr(at, 2) != "%@") {
            text += format[at++];
            continue;
        }
        if (argument != arguments.end()) text += *argument++;
        at += 2;
    }
    return text;
}

}  // namespace quietrix
