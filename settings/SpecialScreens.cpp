// SPDX-License-Identifier: MIT
#include "settings/SpecialScreens.h"

namespace settings {

using platform::failure;
using platform::Result;
using platform::UIViewController;
using platform::Value;

namespace {

constexpr const char* noTimePicker = "This screen has no time picker.";
constexpr const char* noTonePicker = "This screen has no tone picker.";

}  // namespace

Value timePane(const std::shared_ptr<UIViewController>& /*screen*/) {
    return nullptr;
}

Result<void> pickTimeRow(const std::shared_ptr<UIViewController>& /*screen*/, std::int64_t /*row*/) {
    return failure(noTimePicker);
}

Result<void> pickTime(const std::shared_ptr<UIViewController>& /*screen*/, const std::string& /*time*/) {
    return failure(noTimePicker);
}

Value tonePicker(const std::shared_ptr<UIViewController>& /*screen*/) {
    return nullptr;
}

Result<void> pickTone(const std::shared_ptr<UIViewController>& /*screen*/,
                      const std::optional<std::string>& /*identifier*/) {
    return failure(noTonePicker);
}

}  // namespace settings
