// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/foundation/Error.h"
#include "settings/channels/LineReader.h"
#include "settings/channels/Session.h"

namespace settings {

/// The channel of scripts and tests: a command a line in, an answer a line out. Between commands the main run
/// loop goes on. Main thread.
class Drive {
  public:
    /// Gives a line's answer; an error ends the channel and is told on standard error.
    using Answerer = std::function<platform::Result<std::string>(const LineReader::Line& line)>;

    /// The descriptors stay the caller's and must stay open as long as this lives, as must the session.
    Drive(Session& session, int input, int output);
    /// With somebody in the session's place.
    Drive(Answerer answerer, int input, int output);
    ~Drive();
    Drive(const Drive&) = delete;
    Drive& operator=(const Drive&) = delete;

    /// Runs until the input ends or nobody reads the output any more. The process's exit status: 0, or 1
    /// after an answer could not be had or written, which is told on standard error.
    int run();

  private:
    void readable();
    void answer(const std::vector<LineReader::Line>& lines);
    void write(const std::string& text);
    void end(int status);

    Answerer answerer_;
    int input_;
    int output_;
    LineReader reader_{Session::maximumLineLength};
    bool ended_ = false;
    int status_ = 0;
};

}  // namespace settings
