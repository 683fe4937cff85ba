// SPDX-License-Identifier: MIT
#include "settings/program/ChildRun.h"

#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <iostream>

#include "device/Descriptor.h"
#include "device/HostFile.h"
#include "device/Interruption.h"
#include "device/ProcessDescriptors.h"

namespace settings {

namespace {

/// An interruption that comes just before the waiting is seen after so many milliseconds.
constexpr int lookAgain = 200;

}  // namespace

platform::Result<ChildRun> ChildRun::begin(const std::function<int()>& body) {
    std::cout << std::flush;
    const pid_t process = fork();
    if (process < 0)
        return platform::failure("No process could be had: " + device::host::message(errno) + ".");
    if (process > 0) return ChildRun(process);
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) signal(number, SIG_IGN);
    // Without what the parent removes, but with all else that is done at a program's end.
    std::exit(body());
}

int ChildRun::wait(const std::function<bool()>& isTooLong) const {
    const device::Descriptor ended(pidfd_open(process_, 0));
    for (pollfd end{ended.get(), POLLIN, 0}; ended && poll(&end, 1, lookAgain) <= 0;) {
        if ((isTooLong && isTooLong()) || device::Interruption::signal() != 0) kill(process_, SIGKILL);
    }
    int status = 0;
    while (waitpid(process_, &status, 0) < 0 && errno == EINTR) continue;
    return status;
}

}  // namespace settings
