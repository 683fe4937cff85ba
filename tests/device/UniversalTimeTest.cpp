// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "device/UniversalTime.h"

namespace {

TEST(UniversalTime, moment_isThatOfNoTimeZone) {
    EXPECT_EQ("2026-11-20T09:00:05Z", device::universalTimeText(1'795'165'205, "%Y-%m-%dT%H:%M:%SZ"));
    EXPECT_EQ("1970-01-01", device::universalTimeText(0, "%Y-%m-%d"));
}

}  // namespace
