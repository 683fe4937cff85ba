// SPDX-License-Identifier: MIT
#pragma once

#include <boost/json/value.hpp>
#include <set>
#include <string>
#include <string_view>

#include "quietrix/Outcome.h"

namespace console {

enum class Format { Text, JSON };

/// Standard output and standard error. What stands in a text for people must have been made visible.
class Output {
  public:
    explicit Output(Format format);

    bool isJSON() const { return format_ == Format::JSON; }
    /// What the process is to end with, once the outcome is printed.
    Status print(const Outcome& outcome);
    /// Whether standard output took it: false when nobody reads it any more, or it cannot be written, which
    /// one line then says.
    bool write(std::string_view text);
    /// A reader that stopped is waited for until that descriptor can be read; write() is false then.
    void waitUntil(int descriptor) { end_ = descriptor; }
    /// One line on standard error.
    void note(std::string_view sentence);

    /// The same for people only, and once: an outcome that says it again is not printed again.
    void log(const std::string& sentence);
    /// From here on nothing is logged: the outcome will have it.
    void silenceLog() { isLogSilent_ = true; }
    /// A question on standard error, whose answer is waited for in the same line.
    void ask(std::string_view question);

    /// The text in that colour on a terminal that shows colours, as it is elsewhere.
    enum class Colour { Dim, Green, Yellow, Red };
    std::string coloured(Colour colour, std::string text) const;

  private:
    /// An error on standard error, in the format that was asked for.
    void complain(const std::string& sentence, const boost::json::value& candidates = nullptr);

    Format format_;
    int end_ = -1;
    bool hasColours_;
    bool hasFailed_ = false;
    bool isLogSilent_ = false;
    std::set<std::string> logged_;
};

}  // namespace console
