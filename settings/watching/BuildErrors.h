// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace settings {

/// What is wrong, as a compiler tells it.
struct BuildError {
    /// Empty where none was named.
    std::string file;
    /// From 1; 0 where none was named.
    int line = 0;
    int column = 0;
    std::string text;

    bool operator==(const BuildError&) const = default;
};

/// The first error that a build has printed: of a C++ compiler or linker, CMake, the page's builder, or of
/// any other tool that says "error:". Nothing when there is none. Any thread.
std::optional<BuildError> firstErrorIn(std::string_view output);

/// The last line that says anything; "" without one. Any thread.
std::string lastLineOf(std::string_view output);

}  // namespace settings
