// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "platform/foundation/Device.h"
#include "platform/foundation/LogSink.h"
#include "settings/recording/RecordedMachine.h"
#include "tests/doubles/Phone.h"

namespace {

using settings::Calendars;
using settings::Connected;
using settings::MachineAnswer;
using settings::MachineAnswers;
using settings::Networks;
using settings::RecordedMachine;

/// Logs each time it is asked, and has one network more then.
class GrowingNetworks : public platform::NetworkSource {
  public:
    std::vector<std::string> knownSSIDs() override {
        platform::log("asked");
        names_.push_back("network " + std::to_string(names_.size()));
        return names_;
    }
    bool isConnected() override { return names_.size() > 1; }

  private:
    std::vector<std::string> names_;
};

class RecordedMachineTest : public testing::Test {
  protected:
    RecordedMachineTest() {
        platform::Device device = platform::Device::current();
        device.log = recorded.hearingLog(phone.log);
        platform::Device::install(device);
        recorded.setServices({phone.calendars, networks, phone.tones});
    }

    doubles::Phone phone;
    std::shared_ptr<GrowingNetworks> networks = std::make_shared<GrowingNetworks>();
    RecordedMachine recorded;
    RecordedMachine replayed;
};

TEST_F(RecordedMachineTest, withinAStep_theMachineIsAskedOnce) {
    recorded.beginStep({});
    EXPECT_EQ(recorded.networks(), Networks{"network 0"});
    EXPECT_EQ(recorded.networks(), Networks{"network 0"});
    recorded.beginStep({});
    EXPECT_EQ(recorded.networks(), (Networks{"network 0", "network 1"}));
}

TEST_F(RecordedMachineTest, newServices_areAskedInTheSameStep) {
    recorded.beginStep({});
    static_cast<void>(recorded.networks());
    recorded.setServices({phone.calendars, std::make_shared<GrowingNetworks>(), phone.tones});
    static_cast<void>(recorded.networks());
    EXPECT_EQ(recorded.takeFound(),
              (MachineAnswers{{Networks{"network 0"}, {"asked"}}, {Networks{"network 0"}, {"asked"}}}));
}

TEST_F(RecordedMachineTest, whatWasFound_isFoundAgainWithWhatWasLogged) {
    recorded.beginStep({});
    const Networks seen = recorded.networks();
    const Connected connected = recorded.connected();
    const MachineAnswers found = recorded.takeFound();
    EXPECT_EQ(found, (MachineAnswers{{seen, {"asked"}}, {connected, {}}}));
    EXPECT_TRUE(recorded.takeFound().empty());
    phone.takeEvents();

    replayed.beginStep(found);
    EXPECT_EQ(replayed.connected(), connected);
    EXPECT_EQ(replayed.networks(), seen);
    EXPECT_EQ(replayed.networks(), seen);
    const auto logged = phone.takeEvents("log");
    ASSERT_EQ(logged.size(), 1U);
    EXPECT_EQ(logged[0].at("text"), platform::Value("asked"));
}

TEST_F(RecordedMachineTest, whatWasNotRecorded_isAsItWasFoundLast) {
    replayed.beginStep({{Calendars{{"id", "Work", "Me", 1}}, {}}});
    EXPECT_EQ(replayed.calendars().size(), 1U);
    replayed.beginStep({});
    EXPECT_EQ(replayed.calendars().size(), 1U);
    EXPECT_TRUE(replayed.tones().empty());
}

TEST_F(RecordedMachineTest, refusal_isRecordedAndTakenOnce) {
    recorded.noteRefusal({"No."});
    replayed.beginStep(recorded.takeFound());
    EXPECT_EQ(replayed.recordedRefusal().reason, "No.");
    EXPECT_FALSE(replayed.recordedRefusal().reason);
}

}  // namespace
