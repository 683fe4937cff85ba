// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "device/StandardErrorLog.h"

namespace {

TEST(StandardErrorLog, write_putsTheLineBehindTheProcessName) {
    device::StandardErrorLog log("Settings");
    testing::internal::CaptureStderr();
    log.write("first");
    log.write("second");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Settings: first\nSettings: second\n");
}

}  // namespace
