// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>

#include "settings/channels/server/RunningServer.h"
#include "tests/doubles/Required.h"
#include "tests/doubles/TemporaryDirectory.h"

namespace settings::server {

namespace {

using doubles::required;

class RunningServerTest : public testing::Test {
  protected:
    RunningServer announced() const {
        return required(RunningServer::announce(runtime_, "/phone", "http://127.0.0.1:1/#secret=2")).value();
    }
    std::optional<RunningServer::Found> found() const { return RunningServer::find(runtime_, "/phone"); }
    /// As long ago as no step of a file system's clock is.
    static void makeOld(const std::string& file) {
        std::filesystem::last_write_time(file,
                                         std::filesystem::last_write_time(file) - std::chrono::minutes(1));
    }

    testing_support::TemporaryDirectory directory_;
    std::string runtime_ = directory_.path().string();
};

TEST_F(RunningServerTest, announced_isFoundUntilItGoes) {
    {
        const RunningServer server = announced();
        EXPECT_EQ(required(found())->url, "http://127.0.0.1:1/#secret=2");
        EXPECT_FALSE(RunningServer::find(runtime_, "/other"));
    }
    EXPECT_FALSE(found());
}

TEST_F(RunningServerTest, retractedUnseen_isGone) {
    RunningServer server = announced();
    EXPECT_TRUE(server.retract());
    EXPECT_FALSE(found());
    EXPECT_TRUE(std::filesystem::is_empty(directory_ / "quietrix-settings"));
}

TEST_F(RunningServerTest, retractedAfterItWasFound_staysUntilItIsAskedForAgain) {
    RunningServer server = announced();
    makeOld(required(found())->file);
    EXPECT_FALSE(server.retract());
    EXPECT_TRUE(found());
    EXPECT_FALSE(server.retract());
    EXPECT_TRUE(server.retract());
    EXPECT_FALSE(found());
}

}  // namespace

}  // namespace settings::server
