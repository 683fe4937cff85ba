// SPDX-License-Identifier: MIT
#pragma once

#include <boost/json/array.hpp>
#include <boost/json/value.hpp>
#include <expected>
#include <string>

namespace console {

/// What the process ends with.
enum class Status { Done = 0, Failed = 1, WrongUse = 2, NoSuchProfile = 3, NotConfirmed = 4 };

/// What a command has to tell, in both forms: the one that was asked for is printed.
struct Answer {
    /// For people, with its line ends; nothing is printed when it is empty.
    std::string text = {};
    boost::json::value json = nullptr;
    Status status = Status::Done;
    /// A line for people on standard error, without its end; empty for none.
    std::string note = {};
    /// Whether the text is printed in either case: data that was asked for in a form of its own.
    bool isData = false;
};

/// Why a command did nothing.
struct Refusal {
    Status status;
    /// One sentence. Line breaks in it are made visible when it is printed.
    std::string message;
    /// Of a profile that is not named clearly: those that it could be; null for any other refusal.
    boost::json::value candidates = nullptr;
};

using Outcome = std::expected<Answer, Refusal>;

inline std::unexpected<Refusal> refusal(Status status, std::string message) {
    return std::unexpected(Refusal{status, std::move(message)});
}

}  // namespace console
