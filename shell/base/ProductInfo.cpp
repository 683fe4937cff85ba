// SPDX-License-Identifier: MIT
#include "shell/base/ProductInfo.h"

#include "platform/foundation/Calendar.h"
#include "platform/foundation/FileManager.h"
#include "platform/foundation/PropertyList.h"
#include "platform/uikit/UIDevice.h"
#include "shell/base/Localization.h"

namespace quietrix {

using platform::Value;

namespace {

Value dictionaryWithContentsOfFile(const std::string& path) {
    const auto data = platform::FileManager::defaultManager().contentsAtPath(path);
    if (!data) return nullptr;
    const auto list = platform::PropertyListSerialization::propertyListWithData(*data);
    return list && list->dictionary() ? *list : Value();
}

}  // namespace

Value& productInfoDict() {
    static Value cached;
    return cached;
}

Value getProductInfoDict() {
    if (productInfoDict().isNil()) {
        productInfoDict() = dictionaryWithContentsOfFile(
            platform::stringByAppendingPathComponent(bundlePath, "Quietrix.plist"));
    }
    return productInfoDict();
}

std::int64_t UI_USER_INTERFACE_IDIOM() {
    const auto device = platform::UIDevice::currentDevice();
    return device.respondsToSelector("userInterfaceIdiom") ? device.userInterfaceIdiom()
                                                           : platform::UIUserInterfaceIdiomPhone;
}

std::int64_t& currentYear() {
    static std::int64_t year = 0;
    return year;
}

std::int64_t yearOfPresentDate() {
    return platform::Calendar::currentCalendar().component_fromDate(platform::CalendarUnitYear,
                                                                    platform::dateNow());
}

}  // namespace quietrix
