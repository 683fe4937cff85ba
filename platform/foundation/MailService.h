// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "platform/foundation/Error.h"
#include "platform/foundation/Value.h"

namespace platform {

/// A file that goes with a mail.
struct MailAttachment {
    std::string name;
    /// As the sender called it; need not be a media type.
    std::string type;
    Data data;
};

/// A mail as it was composed.
struct MailDraft {
    std::string subject;
    std::vector<std::string> to;
    std::string body;
    bool isHTML = false;
    std::vector<MailAttachment> attachments;
};

/// The phone's mail. Main thread.
class MailService {
  public:
    virtual ~MailService() = default;

    /// Whether an account is set up.
    virtual bool canSend() const = 0;
    /// The account's address, which mails are sent from; "" without one.
    virtual std::string senderAddress() const = 0;
    /// Hands the mail over for sending. The error says why it could not be; nothing is half-written then.
    virtual Result<void> send(const MailDraft& draft) = 0;
    /// Keeps the mail as a draft instead.
    virtual Result<void> save(const MailDraft& draft) = 0;
};

}  // namespace platform
