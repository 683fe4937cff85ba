// SPDX-License-Identifier: MIT
// The problem report: the engine's log, mailed to the maker by the user.
#include <utility>

#include "platform/foundation/FileManager.h"
#include "platform/foundation/LogSink.h"
#include "platform/uikit/UIDevice.h"
#include "shell/base/Localization.h"
#include "shell/chrome/CopyRight.h"
#include "support/misc/QuietrixMiscController.h"
#include "velmora/VMUtils.h"

namespace quietrix {

using platform::MFMailComposeViewController;
using velmora::VMUtils;

namespace {

constexpr const char* logPath = "/tmp/velmora.log";
constexpr const char* logName = "velmora.log";
/// No media type; support's own tools look for it.
constexpr const char* attachmentType = "mime";
constexpr const char* supportAddress = "support@velmora.com";

/// What support needs to know of the device, before anything else in the mail.
std::string deviceLines() {
    const auto device = platform::UIDevice::currentDevice();
    return stringWithFormat(
        "Please donot remove the below information.\nSerial number: %@\n%@ with iOS:%@, UDID:%@.",
        {device.serialNumber(), VMUtils::platform(), device.systemVersion(), device.UDID()});
}

void showNoAccountAlert() {
    const auto alert = std::make_shared<platform::UIAlertView>(
        localizedInMainBundle("Information"), localizedInMainBundle("No email accounts configured."), nullptr,
        localizedInMainBundle("Close"), std::vector<std::string>());
    alert->show();
}

}  // namespace

void QuietrixMiscController::emailLogFile(const Row&) {
    if (!MFMailComposeViewController::canSendMail()) {
        showNoAccountAlert();
        return;
    }
    const auto group = specifierAtIndex(std::ssize(*specifiers()) - 2);
    const platform::Value footer = group ? group->propertyForKey("footerText") : platform::Value();
    std::optional<platform::Data> log;
    const auto& files = platform::FileManager::defaultManager();
    if (auto data = files.contentsAtPath(logPath)) {
        log = std::move(*data);
    } else if (files.fileExistsAtPath(logPath)) {
        platform::log(data.error().localizedDescription);
    }

    std::string body = deviceLines();
    if (!footer.isNil()) body = stringWithFormat("%@\n%@", {body, footer.description()});
    const auto composer = std::make_shared<MFMailComposeViewController>();
    composer->setMailComposeDelegate(weak(this));
    composer->setSubject(stringWithFormat("%@ - %@", {productDisplayName, logName}));
    composer->setToRecipients({supportAddress});
    composer->setMessageBody_isHTML(std::move(body), true);
    composer->addAttachmentData_mimeType_fileName(std::move(log), attachmentType, logName);
    presentViewController_animated_completion(composer, true, nullptr);
}

void QuietrixMiscController::mailComposeController_didFinishWithResult_error(
    const std::shared_ptr<MFMailComposeViewController>&, platform::MFMailComposeResult,
    const std::optional<platform::Error>&) {
    dismissViewControllerAnimated_completion(true, nullptr);
}

}  // namespace quietrix
