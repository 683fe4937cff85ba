// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <csignal>

namespace device {

/// The signals that ask a program to end: SIGINT, SIGTERM, and SIGHUP unless whoever started it has it
/// ignored, as nohup does.
sigset_t endingSignals();

/// While it lives, these signals are noted instead of ending the program, so that it can take away what it
/// has made. One at a time; main thread.
class Interruption {
  public:
    Interruption();
    ~Interruption();
    Interruption(const Interruption&) = delete;
    Interruption& operator=(const Interruption&) = delete;

    /// The signal that came last; 0 when none did.
    static int signal();

  private:
    std::array<struct sigaction, 3> before_{};
};

}  // namespace device
