// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/LogSink.h"

namespace device {

/// The system log on standard error: each line behind the process's name, written in one piece.
class StandardErrorLog : public platform::LogSink {
  public:
    explicit StandardErrorLog(std::string processName);

    void write(const std::string& line) override;

  private:
    std::string prefix_;
};

}  // namespace device
