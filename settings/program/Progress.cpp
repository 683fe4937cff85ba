// SPDX-License-Identifier: MIT
#include "settings/program/Progress.h"

#include <unistd.h>

#include <iostream>

namespace settings {

using std::chrono::steady_clock;

Progress::Progress(std::string name, std::uintmax_t whole)
    : name_(std::move(name)), whole_(whole), isShown_(isatty(STDERR_FILENO) == 1) {}

Progress::~Progress() {
    if (hasShown_) std::cerr << "\r\033[K" << std::flush;
}

void Progress::show(std::uintmax_t done) {
    if (!isShown_ || whole_ == 0 || steady_clock::now() < next_) return;
    next_ = steady_clock::now() + every;
    hasShown_ = true;
    std::cerr << '\r' << name_ << ": " << done * 100 / whole_ << " %" << std::flush;
}

}  // namespace settings
