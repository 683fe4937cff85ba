// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "platform/foundation/Value.h"

namespace settings {

/// What can be read of an attachment before it is sent: all of a log, so that nobody sends what they have not
/// seen.
struct AttachmentPreview {
    /// As long as the log files that this system writes get.
    static constexpr std::size_t longest = std::size_t{1} << 20;

    /// Valid UTF-8. Control characters stand as their pictures, bytes that are no UTF-8 as U+FFFD.
    std::string text;
    /// How many bytes of the attachment the text stands for, at most `longest`.
    std::size_t bytes = 0;

    /// Empty for what is no text: bytes with a zero among them.
    static std::optional<AttachmentPreview> of(const platform::Data& data);
};

}  // namespace settings
