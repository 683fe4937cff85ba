// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>

#include "device/Interruption.h"
#include "device/ProcessEnd.h"

namespace {

/// How a process ends that does this.
template <class Function>
std::string endOf(const Function& function) {
    const pid_t process = fork();
    if (process == 0) _exit(function());
    int status = 0;
    EXPECT_EQ(waitpid(process, &status, 0), process);
    return device::processEndText(status);
}

TEST(Interruption, signals_areNotedWhileItLivesAndEndTheProgramAfterwards) {
    EXPECT_EQ(endOf([] {
                  const device::Interruption interruption;
                  const bool wasNone = device::Interruption::signal() == 0;
                  raise(SIGTERM);
                  // The thread sanitizer hands a signal over in the next call that waits.
                  while (device::Interruption::signal() == 0) usleep(1000);
                  return wasNone && device::Interruption::signal() == SIGTERM ? 7 : 1;
              }),
              "exit status 7");
    EXPECT_EQ(endOf([] {
                  {
                      const device::Interruption interruption;
                  }
                  raise(SIGINT);
                  return EXIT_SUCCESS;
              }),
              "signal 2 (Interrupt)");
}

}  // namespace
