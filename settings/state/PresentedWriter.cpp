// SPDX-License-Identifier: MIT
#include "settings/state/PresentedWriter.h"

#include <string>
#include <string_view>

#include "platform/foundation/Device.h"
#include "platform/messageui/MFMailComposeViewController.h"
#include "platform/preferences/PSConfirmationController.h"
#include "platform/social/SLComposeViewController.h"
#include "settings/state/AttachmentPreview.h"
#include "settings/state/ScreenValues.h"

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

Dictionary alertValue(const UIAlertController& alert) {
    Array actions;
    for (const auto& action : alert.actions()) {
        actions.emplace_back(Dictionary{{"title", action.title}, {"style", styleName(action.style)}});
    }
    return Dictionary{{"kind", kindOf(alert)},
                      {"title", ScreenValues::text(alert.title())},
                      {"message", ScreenValues::text(alert.message())},
                      {"actions", actions}};
}

Value attachmentValue(const platform::MailAttachment& attachment) {
    const auto preview = AttachmentPreview::of(attachment.data);
    return Dictionary{{"name", attachment.name},
                      {"type", attachment.type},
                      {"bytes", attachment.data.size()},
                      {"preview", preview.text},
                      {"previewed", preview.bytes}};
}

Dictionary mailValue(const platform::MailDraft& draft) {
    Array to(draft.to.begin(), draft.to.end());
    Array attachments;
    for (const platform::MailAttachment& attachment : draft.attachments)
        attachments.push_back(attachmentValue(attachment));
    const auto& mail = platform::Device::current().mail;
    return Dictionary{{"kind", "mail"},
                      {"from", mail ? mail->senderAddress() : std::string()},
                      {"to", std::move(to)},
                      {"subject", draft.subject},
                      {"body", draft.body},
                      {"html", draft.isHTML},
                      {"attachments", std::move(attachments)}};
}

Dictionary valueOf(const platform::UIViewController& presented) {
    if (const auto* alert = dynamic_cast<const UIAlertController*>(&presented)) return alertValue(*alert);
    if (const auto* composer = dynamic_cast<const platform::MFMailComposeViewController*>(&presented))
        return mailValue(composer->draft());
    if (const auto* composer = dynamic_cast<const platform::SLComposeViewController*>(&presented)) {
        return {{"kind", "social"}, {"service", composer->serviceType()}, {"text", composer->initialText()}};
    }
    // A screen of a kind that only a bundle knows: it is there, though nothing on it can be pressed.
    return {{"kind", "alert"},
            {"title", ScreenValues::text(presented.title())},
            {"message", nullptr},
            {"actions", Array()}};
}

}  // namespace

Value presentedValue(const std::shared_ptr<platform::UIViewController>& presented) {
    if (!presented) return nullptr;
    Dictionary value = valueOf(*presented);
    value["id"] = presented->number();
    return value;
}

}  // namespace settings
