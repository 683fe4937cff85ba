// SPDX-License-Identifier: MIT
#include "platform/uikit/UIDevice.h"

#include "platform/foundation/Bundle.h"
#include "platform/foundation/Device.h"

namespace platform {

namespace {

const DeviceFacts* facts() {
    return Device::current().facts.get();
}

}  // namespace

bool UIDevice::respondsToSelector(std::string_view selector) const {
    if (selector == "userInterfaceIdiom")
        return facts() != nullptr && facts()->userInterfaceIdiom().has_value();
    return selector == "systemVersion" || selector == "serialNumber" || selector == "UDID";
}

std::int64_t UIDevice::userInterfaceIdiom() const {
    if (facts() == nullptr) return UIUserInterfaceIdiomPhone;
    return facts()->userInterfaceIdiom().value_or(UIUserInterfaceIdiomPhone);
}

std::string UIDevice::systemVersion() const {
    return facts() == nullptr ? "" : facts()->systemVersion();
}

std::string UIDevice::serialNumber() const {
    return facts() == nullptr ? "" : facts()->serialNumber();
}

std::string UIDevice::UDID() const {
    return facts() == nullptr ? "" : facts()->UDID();
}

double UIScreen::scale() const {
    return facts() == nullptr ? 2.0 : facts()->screenScale();
}

Rect UIScreen::bounds() const {
    if (UIDevice::currentDevice().userInterfaceIdiom() == UIUserInterfaceIdiomPad) return {0, 0, 768, 1024};
    return {0, 0, 390, 844};
}

std::vector<std::string> preferredLanguages() {
    if (facts() != nullptr) {
        if (auto languages = facts()->preferredLanguages(); !languages.empty()) return languages;
    }
    return {"en"};
}

std::string localizedLabelFromUIKit(std::string_view key) {
    return Bundle::mainBundle()->localizedStringForKey_value_table(key, "", "UIKit");
}

}  // namespace platform
