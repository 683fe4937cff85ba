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

sigset_t endingSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    struct sigaction hangup{};
    const bool isKept = sigaction(SIGHUP, nullptr, &hangup) == 0 && hangup.sa_handler == SIG_IGN;
    for (const int number : endings) {
        // A signal that is held back arrives although it is ignored.
        if (number != SIGHUP || !isKept) sigaddset(&signals, number);
    }
    return signals;
}

Interruption::Interruption() {
    const sigset_t asked = endingSignals();
    struct sigaction action{};
    // Calls that wait are not begun anew, so that they see it.
    action.sa_handler = note;
    for (std::size_t i = 0; i < endings.size(); ++i)
        sigaction(endings[i], sigismember(&asked, endings[i]) == 1 ? &action : nullptr, &before_[i]);
}

Interruption::~Interruption() {
    for (std::size_t i = 0; i < endings.size(); ++i) sigaction(endings[i], &before_[i], nullptr);
}

int Interruption::signal() {
    return noted;
}

}  // namespace device
