// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "platform/foundation/Error.h"
#include "platform/foundation/MailService.h"
#include "platform/foundation/Value.h"

namespace device {

/// Who sends a mail, and when.
struct MailStamp {
    /// "" for a draft of nobody's.
    std::string sender;
    platform::Date date;
};

/// A mail as a message file (RFC 5322 with its parts as RFC 2045 has them, lines ending as those of other
/// files on this machine do): headers, the body as UTF-8, each attachment in base64. A mail program that
/// knows "X-Unsent" opens it for sending. An attachment's type stands there as it was given, a media type or
/// not. Errors: an address that is none, an attachment's type that cannot stand in a header.
platform::Result<platform::Data> mailMessage(const platform::MailDraft& draft, const MailStamp& stamp);

}  // namespace device
