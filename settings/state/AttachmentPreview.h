// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>

#include "platform/foundation/Value.h"

namespace settings {

/// What can be read of an attachment before it is sent: all of a log, so that nobody sends what they have not
/// seen.
struct AttachmentPreview {
    /// As long as the log files that this system writes get.
    static constexpr std::size_t longest = std::size_t{1} << 20;

    /// Valid UTF-8. Control characters, the zero too, stand as their pictures, bytes that are no UTF-8 as
    /// U+FFFD.
    std::string text;
    /// How many bytes of the attachment the text stands for, at most `longest`.
    std::size_t bytes = 0;

    /// Of anything: a log with zero bytes in it, as a sudden end of the machine leaves them, is to be read
    /// too.
    static AttachmentPreview of(const platform::Data& data);
};

}  // namespace settings
