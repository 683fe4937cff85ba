// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "settings/checking/AcceptedFindings.h"
#include "settings/checking/BundleCheck.h"

namespace settings {

/// The forms of what was found. `outcome` says what was looked at; its findings are those that were sorted.

/// For people: the findings by screen, a line each with row and languages, then accepted entries that nothing
/// was found for, and one line that sums up.
std::string reportForPeople(const CheckOutcome& outcome, const SortedFindings& sorted);
/// One object: "findings", "accepted" (with their reasons), "unused", "screens" and "tours".
std::string reportAsJSON(const CheckOutcome& outcome, const SortedFindings& sorted);
/// A test suite with a case for each screen and one for the bundle's files, for what collects test results.
std::string reportAsJUnit(const CheckOutcome& outcome, const SortedFindings& sorted);

}  // namespace settings
