// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <optional>

#include "device/SystemShell.h"
#include "platform/foundation/RunLoop.h"
#include "tests/doubles/Phone.h"
#include "tests/doubles/Required.h"
#include "tests/doubles/TemporaryDirectory.h"

namespace {

using device::SystemShell;
using doubles::required;
using namespace std::chrono_literals;

constexpr auto timeLimit = 60s;

/// A shell whose program a test writes: a script that notes each start with its arguments.
class SystemShellTest : public testing::Test {
  protected:
    void startProgram(const std::string& lines) {
        testing_support::writeText(program, "#!/bin/sh\necho \"$@\" >> '" + starts + "'\n" + lines);
        std::filesystem::permissions(program, std::filesystem::perms::owner_all);
        shell.emplace(program, "/the root", pace);
    }
    /// One that is ready and lives as long as it should.
    void startGoodProgram() { startProgram("echo ready\nexec cat > /dev/null\n"); }

    std::vector<std::string> states() {
        std::vector<std::string> all;
        for (const auto& event : phone.takeEvents("process")) {
            EXPECT_EQ(platform::Value("SpringBoard"), event.at("name"));
            all.push_back(event.at("state").stringOr());
        }
        return all;
    }
    static bool runUntil(const std::function<bool()>& until) {
        return platform::RunLoop::main().runUntil(until, timeLimit);
    }
    std::size_t startCount() const {
        const std::string text = testing_support::readText(starts);
        return static_cast<std::size_t>(std::ranges::count(text, '\n'));
    }

    using States = std::vector<std::string>;
    testing_support::TemporaryDirectory directory;
    std::string program = directory / "program";
    std::string starts = directory / "starts";
    doubles::Phone phone;
    SystemShell::Pace pace{.firstPause = 1ms, .patience = timeLimit};
    std::optional<SystemShell> shell;
};

TEST_F(SystemShellTest, start_countsAsWorkInFlightUntilTheShellIsReady) {
    startGoodProgram();
    phone.drain();
    EXPECT_EQ(States{"started"}, states());
    EXPECT_EQ("/the root\n", testing_support::readText(starts));
}

TEST_F(SystemShellTest, firstStartWithoutDescriptors_isAShortage) {
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &before), 0);
    const device::Descriptor next(open("/dev/null", O_RDONLY | O_CLOEXEC));
    rlimit few = before;
    few.rlim_cur = static_cast<rlim_t>(next.get()) + 2;
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &few), 0);
    shell.emplace("/nowhere", "/the root", pace);
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &before), 0);
    EXPECT_EQ(shell->shortage(), "The system shell \"/nowhere\" is not running: Too many open files.");
    phone.drain();
    EXPECT_TRUE(phone.log->lines().empty());
}

TEST_F(SystemShellTest, firstStartOfAMissingProgram_isNoShortageButALogLine) {
    shell.emplace(directory / "none", "/the root", pace);
    EXPECT_FALSE(shell->shortage());
    phone.drain();
    ASSERT_EQ(phone.log->lines().size(), 1U);
    EXPECT_NE(phone.log->lines()[0].find("No such file"), std::string::npos);
}

TEST_F(SystemShellTest, killedByName_endsAndIsStartedAgainBeforeTheLoopIsDrained) {
    startGoodProgram();
    phone.drain();
    states();
    const auto before = shell->processId();
    ASSERT_TRUE(shell->killProcessByName("SpringBoard"));
    phone.drain();
    EXPECT_EQ((States{"ended", "started"}), states());
    EXPECT_NE(before, shell->processId());
    EXPECT_EQ("/the root\n/the root --restarted\n", testing_support::readText(starts));
}

TEST_F(SystemShellTest, killedAHundredTimes_isThereEachTime) {
    startGoodProgram();
    phone.drain();
    for (int i = 0; i < 100; ++i) {
        ASSERT_TRUE(shell->killProcessByName("SpringBoard"));
        phone.drain();
    }
    EXPECT_EQ(201U, states().size());
    EXPECT_TRUE(shell->processId());
    EXPECT_EQ(101U, startCount());
    EXPECT_TRUE(phone.log->lines().empty());
}

TEST_F(SystemShellTest, killedTwiceAtOnce_isStartedOnce) {
    startGoodProgram();
    phone.drain();
    EXPECT_TRUE(shell->killProcessByName("SpringBoard"));
    EXPECT_TRUE(shell->killProcessByName("SpringBoard"));
    phone.drain();
    EXPECT_EQ((States{"started", "ended", "started"}), states());
}

TEST_F(SystemShellTest, killedBeforeItWasReady_isStartedAgain) {
    startGoodProgram();
    EXPECT_TRUE(shell->killProcessByName("SpringBoard"));
    phone.drain();
    const States told = states();
    ASSERT_FALSE(told.empty());
    EXPECT_EQ("started", told.back());
}

TEST_F(SystemShellTest, killedFromOutside_isStartedAgain) {
    startGoodProgram();
    phone.drain();
    const auto before = shell->processId();
    ASSERT_EQ(0, kill(*before, SIGKILL));
    EXPECT_TRUE(runUntil([&] { return startCount() == 2; }));
    phone.drain();
    EXPECT_EQ((States{"started", "ended", "started"}), states());
}

TEST_F(SystemShellTest, killedFromOutsideOftenerThanTheLimit_isThereEachTime) {
    startGoodProgram();
    phone.drain();
    const auto kills = static_cast<std::size_t>(pace.limit) + 2;
    for (std::size_t done = 1; done <= kills; ++done) {
        ASSERT_EQ(0, kill(*required(shell->processId()), SIGKILL));
        ASSERT_TRUE(runUntil([&] { return startCount() == done + 1; }));
        phone.drain();
    }
    EXPECT_EQ(2 * kills + 1, states().size());
    EXPECT_TRUE(phone.log->lines().empty());
}

TEST_F(SystemShellTest, otherNames_killNothing) {
    startGoodProgram();
    phone.drain();
    for (const char* other : {"", "springboard", "SpringBoard2", "quietrix-settings"})
        EXPECT_FALSE(shell->killProcessByName(other)) << other;
    phone.drain();
    EXPECT_EQ(States{"started"}, states());
}

TEST_F(SystemShellTest, processOfTheMachineWithThatName_isLeftAlone) {
    const std::string copy = directory / "SpringBoard";
    std::filesystem::copy_file("/bin/cat", copy);
    int input[2];
    ASSERT_EQ(0, pipe(input));
    const pid_t stranger = fork();
    if (stranger == 0) {
        dup2(input[0], STDIN_FILENO);
        close(input[1]);
        execl(copy.c_str(), "SpringBoard", nullptr);
        _exit(1);
    }
    close(input[0]);
    startGoodProgram();
    phone.drain();
    ASSERT_TRUE(shell->killProcessByName("SpringBoard"));
    phone.drain();
    EXPECT_EQ(0, waitpid(stranger, nullptr, WNOHANG));
    // Now it ends by itself.
    close(input[1]);
    int status = -1;
    ASSERT_EQ(stranger, waitpid(stranger, &status, 0));
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
}

TEST_F(SystemShellTest, programThatEndsAtOnce_isTriedWithPausesAndThenLeftDownWithOneLine) {
    startProgram("exit 1\n");
    EXPECT_TRUE(runUntil([&] { return !phone.log->lines().empty(); }));
    phone.drain();
    EXPECT_EQ(static_cast<std::size_t>(pace.limit), startCount());
    ASSERT_EQ(1U, phone.log->lines().size());
    EXPECT_NE(std::string::npos, phone.log->lines()[0].find(program));
    const States all = states();
    EXPECT_EQ(static_cast<std::size_t>(pace.limit), std::ranges::count(all, "started"));
    EXPECT_EQ(static_cast<std::size_t>(pace.limit), std::ranges::count(all, "ended"));
    EXPECT_FALSE(shell->processId());
    EXPECT_FALSE(shell->killProcessByName("SpringBoard"));
}

TEST_F(SystemShellTest, pause_doublesWithEachEndAtOnce) {
    EXPECT_EQ(100ms, SystemShell::pauseAfter(SystemShell::Pace(), 1));
    EXPECT_EQ(200ms, SystemShell::pauseAfter(SystemShell::Pace(), 2));
    EXPECT_EQ(400ms, SystemShell::pauseAfter(SystemShell::Pace(), 3));
    EXPECT_EQ(1600ms, SystemShell::pauseAfter(SystemShell::Pace(), 5));
}

TEST_F(SystemShellTest, programThatRecovers_isForgivenItsFailures) {
    pace.limit = 3;
    // Fails twice, is killed by name, fails twice again.
    startProgram("case $(wc -l < '" + starts +
                 "') in 1|2|4|5) exit 1;; esac\necho ready\nexec cat > /dev/null\n");
    ASSERT_TRUE(runUntil([&] { return startCount() == 3; }));
    phone.drain();
    EXPECT_TRUE(shell->killProcessByName("SpringBoard"));
    ASSERT_TRUE(runUntil([&] { return startCount() == 6; }));
    phone.drain();
    const States all = states();
    EXPECT_EQ(6, std::ranges::count(all, "started"));
    ASSERT_FALSE(all.empty());
    EXPECT_EQ("started", all.back());
    EXPECT_TRUE(phone.log->lines().empty());
}

TEST_F(SystemShellTest, killedByNameWhenItWasGivenUp_isStartedAnew) {
    pace.limit = 2;
    // Fails twice, and would not a third time.
    startProgram("case $(wc -l < '" + starts +
                 "') in 1|2) exit 1;; esac\necho ready\nexec cat > /dev/null\n");
    ASSERT_TRUE(runUntil([&] { return !phone.log->lines().empty(); }));
    EXPECT_FALSE(shell->processId());
    EXPECT_FALSE(shell->killProcessByName("SpringBoard")) << "there was none";
    phone.drain();
    EXPECT_EQ((States{"started", "ended", "started", "ended", "started"}), states());
    EXPECT_EQ("/the root\n/the root --restarted\n/the root --restarted\n", testing_support::readText(starts));
}

TEST_F(SystemShellTest, missingProgram_isToldOnce) {
    shell.emplace(directory / "nowhere", "/root", pace);
    phone.drain();
    ASSERT_EQ(1U, phone.log->lines().size());
    EXPECT_NE(std::string::npos, phone.log->lines()[0].find("nowhere"));
}

TEST_F(SystemShellTest, programThatIsNeverReady_holdsTheLoopUpForItsPatienceOnly) {
    pace.patience = 10ms;
    startProgram("exec cat > /dev/null\n");
    phone.drain();
    EXPECT_TRUE(shell->processId());
}

TEST_F(SystemShellTest, itsOwnEnd_endsTheProgramByTheEndOfItsInput) {
    startProgram("echo ready\ncat > /dev/null\necho ended >> '" + starts + "'\n");
    phone.drain();
    shell.reset();
    EXPECT_EQ("/the root\nended\n", testing_support::readText(starts));
}

}  // namespace
