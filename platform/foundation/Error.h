// SPDX-License-Identifier: MIT
#pragma once

#include <expected>
#include <string>

namespace platform {

/// What went wrong, as a value. `localizedDescription` is a whole sentence that can be shown to the user and
/// names the thing concerned (a file by its path, a class by its name) and what is wrong with it.
struct Error {
    std::string localizedDescription;

    bool operator==(const Error&) const = default;
};

/// The one result type of operations that can fail.
template <class T>
using Result = std::expected<T, Error>;

/// The failure half of a Result, from a sentence.
inline std::unexpected<Error> failure(std::string description) {
    return std::unexpected(Error{std::move(description)});
}

}  // namespace platform
