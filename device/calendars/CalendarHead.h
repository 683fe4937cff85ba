// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "platform/foundation/Error.h"

namespace device {

/// What an iCalendar file says of the calendar itself.
struct CalendarHead {
    /// As many bytes of a file as are worth looking at: events come after the calendar's own properties.
    static constexpr std::size_t maximumSize = std::size_t{64} << 10;

    /// As many bytes as an end is looked for in: what follows it are blanks, if anything.
    static constexpr std::size_t tailSize = 512;

    /// The text of the first property of its kind; the bytes are the file's and need not be UTF-8.
    std::optional<std::string> name;
    /// Of the first that is a colour; where none is one, of the first.
    std::optional<std::string> colour;

    /// Reads the calendar's own properties, their names in any letters, up to the first component within it;
    /// the rest, the recurrence rules included, is never looked at. `text` is the file or its beginning; a
    /// line that `maximumSize` cuts does not count. The error completes a sentence about the file, "does not
    /// begin with BEGIN:VCALENDAR".
    static platform::Result<CalendarHead> parse(std::string_view text);

    /// Whether a calendar file is whole and not cut short: whether the last line that is not blank is
    /// END:VCALENDAR. `text` is the file or its last bytes, of which `tailSize` count.
    static bool isTailOfWholeFile(std::string_view text);
};

}  // namespace device
