// SPDX-License-Identifier: MIT
#include "platform/messageui/MFMailComposeViewController.h"

#include <utility>

#include "platform/foundation/Device.h"
#include "platform/foundation/LogSink.h"

namespace platform {

PLATFORM_REGISTER_CLASS(MFMailComposeViewController)

namespace {

Result<void> handOver(const MailDraft& draft, MFMailComposeResult result) {
    if (result == MFMailComposeResult::Cancelled) return {};
    if (result == MFMailComposeResult::Failed) return failure("The mail could not be sent.");
    const auto mail = Device::current().mail;
    if (!mail) return failure("This device has no mail.");
    return result == MFMailComposeResult::Sent ? mail->send(draft) : mail->save(draft);
}

}  // namespace

bool MFMailComposeViewController::canSendMail() {
    const auto& mail = Device::current().mail;
    return mail && mail->canSend();
}

void MFMailComposeViewController::setMessageBody_isHTML(std::string body, bool isHTML) {
    draft_.body = std::move(body);
    draft_.isHTML = isHTML;
}

void MFMailComposeViewController::addAttachmentData_mimeType_fileName(std::optional<Data> data,
                                                                      std::string mimeType,
                                                                      std::string fileName) {
    if (!data) log("MFMailComposeViewController: The attachment \"" + fileName + "\" has no data.");
    draft_.attachments.push_back(
        {std::move(fileName), std::move(mimeType), std::move(data).value_or(Data())});
}

bool MFMailComposeViewController::finish(MFMailComposeResult result) {
    // Its holder lets it go when it is dismissed.
    const auto self = shared(this);
    if (!presentingViewController() || std::exchange(ended_, true)) return false;
    std::optional<Error> error;
    if (const Result<void> done = handOver(draft_, result); !done) {
        log("MFMailComposeViewController: " + done.error().localizedDescription);
        error = done.error();
        result = MFMailComposeResult::Failed;
    }
    if (const auto delegate = delegate_.lock()) {
        delegate->mailComposeController_didFinishWithResult_error(self, result, error);
    } else {
        dismissItself(true);
    }
    return true;
}

}  // namespace platform
