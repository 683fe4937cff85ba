// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "device/DatagramTransport.h"
#include "device/RootFileSystem.h"
#include "device/SystemShell.h"
#include "platform/foundation/DarwinNotificationCenter.h"
#include "platform/foundation/Device.h"
#include "springboard/SpringBoard.h"
#include "tests/doubles/Phone.h"
#include "tests/doubles/TemporaryDirectory.h"

namespace {

using device::SystemShell;

/// The real shell as a child of this program, on a root that both share.
class RestartedShell : public testing::Test {
  protected:
    RestartedShell() {
        platform::DarwinNotificationCenter::shared().reset();
        platform::Device machine;
        machine.files = std::make_shared<device::RootFileSystem>(directory.path().string());
        machine.clock = phone.clock;
        machine.log = phone.log;
        machine.notifications = std::make_shared<device::DatagramTransport>(directory.path().string());
        platform::Device::install(machine);
        EXPECT_TRUE(platform::DarwinNotificationCenter::shared().connect());
        shell.emplace(SPRINGBOARD, directory.path().string(),
                      SystemShell::Pace{.patience = std::chrono::minutes(1)});
        phone.drain();
    }
    ~RestartedShell() override { platform::DarwinNotificationCenter::shared().reset(); }

    /// The states of the shell, and "told" for each time that profiles' applied state was said to have
    /// changed.
    std::vector<std::string> takeEvents() {
        std::vector<std::string> lines;
        for (const auto& event : phone.takeEvents()) {
            if (event.contains("state")) lines.push_back(event.at("state").stringOr());
            if (event.at("event") == platform::Value("darwinReceived")) {
                EXPECT_EQ(platform::Value(springboard::SpringBoard::appliedStateChanged), event.at("name"));
                lines.emplace_back("told");
            }
        }
        return lines;
    }

    testing_support::TemporaryDirectory directory;
    doubles::Phone phone;
    std::optional<SystemShell> shell;
};

TEST_F(RestartedShell, firstStart_tellsTheScreensNothing) {
    EXPECT_EQ(std::vector<std::string>{"started"}, takeEvents());
}

TEST_F(RestartedShell, eachStartAfterAKill_tellsTheScreensBeforeTheLoopIsDrained) {
    takeEvents();
    for (int i = 0; i < 100; ++i) {
        ASSERT_TRUE(shell->killProcessByName("SpringBoard"));
        phone.drain();
        std::vector<std::string> events = takeEvents();
        // Being told and being ready come over different ways.
        std::ranges::sort(events);
        EXPECT_EQ((std::vector<std::string>{"ended", "started", "told"}), events);
    }
}

}  // namespace
