// SPDX-License-Identifier: MIT
#include "settings/state/DeviceWriter.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "platform/foundation/Bundle.h"
#include "platform/foundation/Calendar.h"
#include "platform/foundation/DateFormatter.h"
#include "platform/foundation/Device.h"
#include "platform/uikit/UIDevice.h"

namespace settings {

using platform::Dictionary;

namespace {

bool isWrittenFromTheRight(std::string_view languageTag) {
    constexpr std::array<std::string_view, 4> languages{"ar", "he", "fa", "ur"};
    return std::ranges::find(languages, languageTag.substr(0, languageTag.find_first_of("-_"))) !=
           languages.end();
}

std::string localTime() {
    platform::DateFormatter formatter;
    formatter.setDateFormat("yyyy-MM-dd'T'HH:mm:ss");
    return formatter.stringFromDate(platform::dateNow());
}

}  // namespace

Dictionary DeviceWriter::lasting() const {
    const std::vector<std::string> languages = platform::preferredLanguages();
    const std::string& language = languages.front();
    const auto& device = platform::Device::current();
    const bool pad =
        platform::UIDevice::currentDevice().userInterfaceIdiom() == platform::UIUserInterfaceIdiomPad;
    const bool clockRuns = application_.clock() == nullptr;
    Dictionary facts{{"darkMode", device.facts && device.facts->isDarkMode()},
                     {"rightToLeft", isWrittenFromTheRight(language)},
                     {"language", language},
                     {"scale", platform::UIScreen::mainScreen().scale()},
                     {"idiom", pad ? "pad" : "phone"},
                     {"clockRuns", clockRuns},
                     {"wifi", device.networks && device.networks->isConnected()}};
    if (languages.size() > 1) facts["languages"] = platform::Array(languages.begin(), languages.end());
    if (!clockRuns) facts["clock"] = localTime();
    return facts;
}

Dictionary DeviceWriter::now() const {
    Dictionary facts = lasting();
    facts["clock"] = localTime();
    return facts;
}

}  // namespace settings
