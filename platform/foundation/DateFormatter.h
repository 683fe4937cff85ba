// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/foundation/Value.h"

namespace platform {

/// Turns dates into texts and back by a pattern of h, hh, H, HH, m, mm, s, ss, a, y, yyyy, M, MM, d, dd and
/// literal characters ('quoted' letters, '' for an apostrophe). Doubled letters pad with zeros; reading
/// accepts both. The day's halves are the English AM and PM in every language, so that a stored time parses
/// everywhere. In the machine's time zone. Main thread only (there is a shared one).
class DateFormatter {
  public:
    void setDateFormat(std::string pattern) { pattern_ = std::move(pattern); }
    const std::string& dateFormat() const { return pattern_; }

    /// "" for a date that the calendar cannot take apart.
    std::string stringFromDate(Date date) const;
    /// The date, its missing parts those of the calendar's reference day; empty when the text does not match
    /// the pattern to its end, a part is out of its range, or the day is not in its month. Case and
    /// surrounding blanks of AM and PM do not matter.
    std::optional<Date> dateFromString(std::string_view text) const;

  private:
    std::string pattern_;
};

}  // namespace platform
