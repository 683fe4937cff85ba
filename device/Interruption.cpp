// SPDX-License-Identifier: MIT
#include "device/Interruption.h"

#include <array>
#include <cstddef>

namespace device {

namespace {

constexpr std::array endings{SIGINT, SIGTERM, SIGHUP};
volatile std::sig_atomic_t noted = 0;

void note(int number) {
    noted = number;
}

}  // namespace

Interruption::Interruption() {
    struct sigaction action{};
    // Calls that wait are not begun anew, so that they see it.
    action.sa_handler = note;
    for (std::size_t i = 0; i < endings.size(); ++i) sigaction(endings[i], &action, &before_[i]);
}

Interruption::~Interruption() {
    for (std::size_t i = 0; i < endings.size(); ++i) sigaction(endings[i], &before_[i], nullptr);
}

int Interruption::signal() {
    return noted;
}

}  // namespace device
