// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <ctime>

#include "device/TimeZone.h"
#include "device/VirtualClock.h"
#include "tests/doubles/Desktop.h"

namespace {

using testing_support::Variable;

/// The zone of the test's process is given back at the end.
class TimeZone : public testing::Test {
  protected:
    ~TimeZone() override { tzset(); }
};

TEST_F(TimeZone, variable_isTheZone) {
    const Variable zone("TZ", "<+0545>-05:45");
    EXPECT_EQ(device::timeZone(), "<+0545>-05:45");
}

TEST_F(TimeZone, withoutAVariable_theZoneThatIsToldGivesTheSameTime) {
    const Variable none("TZ", nullptr);
    tzset();
    const std::string before = device::VirtualClock::text({0});
    const std::string zone = device::timeZone();
    EXPECT_NE(zone, "");
    device::setTimeZone("<+1400>-14");
    EXPECT_EQ(device::VirtualClock::text({0}), "2001-01-01T14:00:00");
    device::setTimeZone(zone);
    EXPECT_EQ(device::VirtualClock::text({0}), before);
}

}  // namespace
