// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/foundation/Error.h"
#include "platform/foundation/MailService.h"
#include "platform/uikit/UIViewController.h"

namespace platform {

enum class MFMailComposeResult : std::int64_t { Cancelled = 0, Saved = 1, Sent = 2, Failed = 3 };

class MFMailComposeViewController;

/// Told how the user ended the composer, which it then dismisses. Main thread.
class MFMailComposeViewControllerDelegate {
  public:
    virtual ~MFMailComposeViewControllerDelegate() = default;

    /// Selector "mailComposeController:didFinishWithResult:error:". Called once; there is an error with
    /// Failed and with no other result.
    virtual void mailComposeController_didFinishWithResult_error(
        const std::shared_ptr<MFMailComposeViewController>& composer, MFMailComposeResult result,
        const std::optional<Error>& error) = 0;
};

/// The phone's mail composer, filled in before it is presented. Nothing is sent by itself: the user ends it,
/// and the mail goes to the device's mail service. Main thread.
class MFMailComposeViewController : public UIViewController {
    PLATFORM_CLASS(MFMailComposeViewController, UIViewController)

  public:
    /// Whether the device has a mail service with an account.
    static bool canSendMail();

    void setSubject(std::string subject) { draft_.subject = std::move(subject); }
    void setToRecipients(std::vector<std::string> recipients) { draft_.to = std::move(recipients); }
    void setMessageBody_isHTML(std::string body, bool isHTML);
    /// Nil data (of a file that could not be read) is attached as an empty file, with a log line that names
    /// it. The type is kept as it is given, a media type or not.
    void addAttachmentData_mimeType_fileName(std::optional<Data> data, std::string mimeType,
                                             std::string fileName);
    std::shared_ptr<MFMailComposeViewControllerDelegate> mailComposeDelegate() const {
        return delegate_.lock();
    }
    /// Not kept alive. Without one the composer dismisses itself when it has ended.
    void setMailComposeDelegate(std::weak_ptr<MFMailComposeViewControllerDelegate> delegate) {
        delegate_ = std::move(delegate);
    }

    const MailDraft& draft() const { return draft_; }

    /// How the user ends it. Sent and Saved hand the mail to the device's mail service; when that cannot take
    /// it, the result becomes Failed with the service's error. Failed by itself sends nothing. False, and
    /// nothing happens, when it is not shown or has been ended before.
    bool finish(MFMailComposeResult result);

  private:
    MailDraft draft_;
    std::weak_ptr<MFMailComposeViewControllerDelegate> delegate_;
    bool ended_ = false;
};

}  // namespace platform
