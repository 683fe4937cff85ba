// SPDX-License-Identifier: MIT
#include "device/StandardErrorLog.h"

#include <unistd.h>

#include <utility>

namespace device {

StandardErrorLog::StandardErrorLog(std::string processName) : prefix_(std::move(processName) + ": ") {}

void StandardErrorLog::write(const std::string& line) {
    const std::string text = prefix_ + line + "\n";
    // A log that cannot be written has nowhere to complain.
    [[maybe_unused]] const ssize_t written = ::write(STDERR_FILENO, text.data(), text.size());
}

}  // namespace device
