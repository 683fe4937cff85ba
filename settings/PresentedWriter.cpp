// SPDX-License-Identifier: MIT
#include "settings/PresentedWriter.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "platform/foundation/Device.h"
#include "platform/foundation/Unicode.h"
#include "platform/messageui/MFMailComposeViewController.h"
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
    if (alert.preferredStyle() == platform::UIAlertControllerStyleActionSheet) return "sheet";
    return alert.actions().empty() ? "activity" : "alert";
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

/// How much of an attachment is shown, in bytes.
constexpr std::size_t longestPreview = 64UL * 1024;

/// The beginning of a text; nil for other bytes.
Value preview(const platform::Data& data) {
    std::string text(data.begin(),
                     data.begin() + static_cast<std::ptrdiff_t>(std::min(data.size(), longestPreview)));
    if (const auto invalid = platform::firstInvalidUTF8(text)) {
        // At the end it may be a character that was cut in two.
        constexpr std::size_t longestCharacter = 4;
        if (data.size() <= longestPreview || text.size() - *invalid >= longestCharacter) return nullptr;
        text.resize(*invalid);
    }
    const auto isControl = [](char c) {
        return static_cast<unsigned char>(c) < 32 && c != '\t' && c != '\n' && c != '\r';
    };
    if (std::ranges::any_of(text, isControl)) return nullptr;
    return text;
}

Value mailValue(const platform::MailDraft& draft) {
    Array to(draft.to.begin(), draft.to.end());
    Array attachments;
    for (const platform::MailAttachment& attachment : draft.attachments) {
        attachments.emplace_back(Dictionary{{"name", attachment.name},
                                            {"type", attachment.type},
                                            {"bytes", attachment.data.size()},
                                            {"preview", preview(attachment.data)}});
    }
    const auto& mail = platform::Device::current().mail;
    return Dictionary{{"kind", "mail"},
                      {"from", mail ? mail->senderAddress() : std::string()},
                      {"to", std::move(to)},
                      {"subject", draft.subject},
                      {"body", draft.body},
                      {"html", draft.isHTML},
                      {"attachments", std::move(attachments)}};
}

}  // namespace

Value presentedValue(const std::shared_ptr<platform::UIViewController>& presented) {
    if (!presented) return nullptr;
    if (const auto* alert = dynamic_cast<const UIAlertController*>(presented.get()))
        return alertValue(*alert);
    if (const auto* composer = dynamic_cast<const platform::MFMailComposeViewController*>(presented.get()))
        return mailValue(composer->draft());
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
