// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "platform/foundation/Error.h"
#include "platform/foundation/Value.h"
#include "settings/checking/Finding.h"

namespace settings {

/// A finding that stays, and why. What is left out may be anything.
struct AcceptedFinding {
    std::string kind;
    std::string screen;
    std::string row;
    std::string subject;
    /// Never empty.
    std::string reason;

    bool accepts(const Finding& finding) const;
};

/// Reads such a list: lines of JSON, an object each, or a property list with an array of dictionaries; the
/// keys are the members' names, their values texts. An entry needs a "kind" that there is and a "reason"; a
/// key of another name is an error. The error says which entry is wrong and how.
platform::Result<std::vector<AcceptedFinding>> parseAcceptedFindings(const platform::Data& data);

/// The findings, and of which of them each entry took some.
struct SortedFindings {
    std::vector<Finding> open;
    std::vector<std::pair<Finding, std::string>> accepted;  // with the reason
    /// Entries that took none.
    std::vector<AcceptedFinding> unused;
};
SortedFindings sortFindings(const std::vector<Finding>& findings,
                            const std::vector<AcceptedFinding>& accepted);

}  // namespace settings
