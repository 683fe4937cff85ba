// SPDX-License-Identifier: MIT
#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <vector>

#include "device/Descriptor.h"

namespace testing_support {

/// Another process of a test: the peer program with arguments, its standard input and output as pipes. It is
/// killed, by its own number, when this object goes.
class Child {
  public:
    explicit Child(const std::vector<std::string>& arguments);
    ~Child();
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    pid_t pid() const { return pid_; }
    /// The next line of its output without the line break; empty at its end, or when none comes for a long
    /// time.
    std::optional<std::string> readLine();
    /// Every line up to the end of its output.
    std::vector<std::string> readLines();
    /// Sends it an empty line.
    void writeLine();
    /// Ends its input, which most peers take as the sign to end.
    void closeInput();
    void signal(int number);
    /// Waits for its end and gives its exit status, or -1 when a signal ended it.
    int wait();

  private:
    pid_t pid_ = 0;
    device::Descriptor input_;
    device::Descriptor output_;
    std::string buffer_;
};

}  // namespace testing_support
