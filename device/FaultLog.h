// SPDX-License-Identifier: MIT
#pragma once

#include <set>
#include <string>

namespace device {

/// The log lines of a service that is asked again and again, and finds the same files broken each time: a
/// line is written when the question before did not have it. Main thread.
class FaultLog {
  public:
    /// Reports a fault that the question under way met. `line` is the log line; `state` tells one state of
    /// the file concerned from another, so that a file that was changed and is still broken is logged again.
    void report(const std::string& line, const std::string& state = {});
    /// Ends the question: what it did not report is mended, and news when it comes back.
    void endQuestion();

  private:
    std::set<std::string> before_;
    std::set<std::string> now_;
};

}  // namespace device
