// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>

#include "device/Interruption.h"

namespace {

/// Each in a program of its own, since a signal is the whole program's.
class InterruptionDeathTest : public testing::Test {
  protected:
    void SetUp() override { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
};

TEST_F(InterruptionDeathTest, signalWhileItLives_isNoted) {
    EXPECT_EXIT(
        {
            const device::Interruption interruption;
            const bool wasNone = device::Interruption::signal() == 0;
            raise(SIGTERM);
            // The thread sanitizer hands a signal over in the next call that waits.
            while (device::Interruption::signal() == 0) usleep(1000);
            _exit(wasNone && device::Interruption::signal() == SIGTERM ? 7 : 1);
        },
        testing::ExitedWithCode(7), "");
}

TEST_F(InterruptionDeathTest, hangupThatIsIgnored_staysIgnored) {
    EXPECT_EXIT(
        {
            std::signal(SIGHUP, SIG_IGN);
            const device::Interruption interruption;
            raise(SIGHUP);
            const sigset_t asked = device::endingSignals();
            const bool isAsked = sigismember(&asked, SIGHUP) == 1 || sigismember(&asked, SIGTERM) != 1;
            raise(SIGINT);
            // The thread sanitizer hands a signal over in the next call that waits.
            while (device::Interruption::signal() == 0) usleep(1000);
            _exit(!isAsked && device::Interruption::signal() == SIGINT ? 7 : 1);
        },
        testing::ExitedWithCode(7), "");
}

TEST_F(InterruptionDeathTest, signalAfterwards_endsTheProgram) {
    EXPECT_EXIT(
        {
            {
                const device::Interruption interruption;
            }
            raise(SIGINT);
            _exit(EXIT_SUCCESS);
        },
        testing::KilledBySignal(SIGINT), "");
}

}  // namespace
