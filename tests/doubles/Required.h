// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <source_location>
#include <string>
#include <utility>

namespace doubles {

/// Fails the test at that place and ends it, so that the tests after it still run. On the test's own thread,
/// and not from what must not throw.
[[noreturn]] inline void endTest(const std::string& why, const std::source_location& where) {
    const int line = static_cast<int>(where.line());
    ADD_FAILURE_AT(where.file_name(), line) << why;
    throw testing::AssertionException(testing::TestPartResult(testing::TestPartResult::kFatalFailure,
                                                              where.file_name(), line, why.c_str()));
}

/// What was given, when there is something in it: a pointer, an optional or a result. Ends the test when
/// there is not, in place of the crash that a look into it would be:
///
///     required(stored())->title()      not      stored()->title()
template <class Holder>
Holder required(Holder&& holder, const std::source_location& where = std::source_location::current()) {
    if (!holder) {
        std::string why = "There is nothing in what this line looks into.";
        if constexpr (requires { holder.error().localizedDescription; })
            why += " " + holder.error().localizedDescription;
        endTest(why, where);
    }
    return std::forward<Holder>(holder);
}

/// What a result says went wrong; "no error" when nothing did.
template <class Result>
std::string errorOf(const Result& result) {
    return result ? "no error" : result.error().localizedDescription;
}

}  // namespace doubles
