// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "springboard/NotificationLog.h"
#include "tests/doubles/Phone.h"
#include "tests/doubles/TemporaryDirectory.h"

namespace springboard {
namespace {

using testing_support::readText;
using testing_support::TemporaryDirectory;

constexpr std::chrono::system_clock::time_point instant{std::chrono::seconds(1'795'252'500)};

TEST(NotificationLog, notification_isOneLineOfTimeAndName) {
    const TemporaryDirectory directory;
    NotificationLog log(directory / "log");
    log.write(instant, "first");
    log.write(instant, "second");
    EXPECT_EQ("2026-11-21T09:15:00Z first\n2026-11-21T09:15:00Z second\n", readText(directory / "log"));
}

TEST(NotificationLog, fileThatGrewTooLong_isPutAsideWhole) {
    const TemporaryDirectory directory;
    const std::string old(static_cast<std::size_t>(NotificationLog::maximumSize), 'x');
    testing_support::writeText(directory / "log", old);
    NotificationLog log(directory / "log");
    log.write(instant, "name");
    EXPECT_EQ("2026-11-21T09:15:00Z name\n", readText(directory / "log"));
    EXPECT_EQ(old, readText(directory / "log.old"));
}

TEST(NotificationLog, fileThatCannotBeWritten_isToldInTheSystemLogAndHoldsNothingUp) {
    doubles::Phone phone;
    const TemporaryDirectory directory;
    ASSERT_EQ(0, mkfifo((directory / "pipe").c_str(), 0600));
    NotificationLog(directory / "pipe").write(instant, "name");
    NotificationLog(directory / "none/log").write(instant, "name");
    ASSERT_EQ(2U, phone.log->lines().size());
    EXPECT_NE(std::string::npos, phone.log->lines()[0].find(directory / "pipe"));
    EXPECT_NE(std::string::npos, phone.log->lines()[1].find("No such file"));
}

}  // namespace
}  // namespace springboard
