// SPDX-License-Identifier: MIT
#include "settings/PresentedWriter.h"

#include <string_view>

#include "platform/preferences/PSConfirmationController.h"
#include "platform/social/SLComposeViewController.h"
#include "settings/ScreenValues.h"

namespace settings {

using platform::Array;
using platform::Dictionary;
using platform::UIAlertController;
using platform::Value;

namespace {

std::string_view styleName(std::int64_t style) {
    switch (style) {
        case platform::UIAlertActionStyleCancel:
            return "cancel";
        case platform::UIAlertActionStyleDestructive:
            return "destructive";
        default:
            return "default";
    }
}

std::string_view kindOf(const UIAlertController& alert) {
    if (dynamic_cast<const platform::PSConfirmationController*>(&alert)) return "confirmation";
    return alert.preferredStyle() == platform::UIAlertControllerStyleActionSheet ? "sheet" : "alert";
}

Value alertValue(const UIAlertController& alert) {
    Array actions;
    for (const auto& action : alert.actions()) {
        actions.emplace_back(Dictionary{{"title", action.title}, {"style", styleName(action.style)}});
    }
    return Dictionary{{"kind", kindOf(alert)},
                      {"title", ScreenValues::text(alert.title())},
                      {"message", ScreenValues::text(alert.message())},
                      {"actions", actions}};
}

}  // namespace

Value presentedValue(const std::shared_ptr<platform::UIViewController>& presented) {
    if (!presented) return nullptr;
    if (const auto* alert = dynamic_cast<const UIAlertController*>(presented.get()))
        return alertValue(*alert);
    if (const auto* composer = dynamic_cast<const platform::SLComposeViewController*>(presented.get())) {
        return Dictionary{
            {"kind", "social"}, {"service", composer->serviceType()}, {"text", composer->initialText()}};
    }
    // A screen of a kind that only a bundle knows: it is there, though nothing on it can be pressed.
    return Dictionary{{"kind", "alert"},
                      {"title", ScreenValues::text(presented->title())},
                      {"message", nullptr},
                      {"actions", Array()}};
}

}  // namespace settings
