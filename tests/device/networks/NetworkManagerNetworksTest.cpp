// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <future>
#include <memory>
#include <stdexcept>

#include "device/networks/NetworkManagerNetworks.h"
#include "tests/doubles/Phone.h"

namespace {

using device::NetworkManagerNetworks;
using device::SavedNetworks;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Answer = platform::Result<SavedNetworks>;
using namespace std::chrono_literals;

constexpr auto plenty = 60s;

TEST(NetworkManagerNetworks, answer_isGivenWithItsFaultsLogged) {
    doubles::Phone phone;
    NetworkManagerNetworks networks([](auto) { return Answer(SavedNetworks{{"b", "a"}, {"left out"}}); },
                                    plenty);
    EXPECT_THAT(networks.knownSSIDs(), ElementsAre("b", "a"));
    EXPECT_THAT(phone.log->lines(), ElementsAre("left out"));
}

TEST(NetworkManagerNetworks, refusal_isEmptyWithOneLine) {
    doubles::Phone phone;
    NetworkManagerNetworks networks([](auto) { return Answer(platform::failure("No bus.")); }, plenty);
    EXPECT_THAT(networks.knownSSIDs(), IsEmpty());
    EXPECT_THAT(phone.log->lines(),
                ElementsAre("The network manager's Wi-Fi networks could not be had: No bus."));
}

TEST(NetworkManagerNetworks, whatTheLibraryThrows_isALineToo) {
    doubles::Phone phone;
    NetworkManagerNetworks networks([](auto) -> Answer { throw std::runtime_error("broken"); }, plenty);
    EXPECT_THAT(networks.knownSSIDs(), IsEmpty());
    EXPECT_THAT(phone.log->lines(), ElementsAre(HasSubstr("broken")));
}

TEST(NetworkManagerNetworks, managerThatNeverAnswers_isGivenUp) {
    doubles::Phone phone;
    std::promise<void> release;
    auto ended = std::make_shared<std::promise<void>>();
    NetworkManagerNetworks networks(
        [released = release.get_future().share(), ended](auto) {
            released.wait();
            ended->set_value();
            return Answer(SavedNetworks{{"too late"}, {}});
        },
        0s);
    // The question is still waiting when this returns: nothing else releases it.
    EXPECT_THAT(networks.knownSSIDs(), IsEmpty());
    EXPECT_THAT(phone.log->lines(), ElementsAre(HasSubstr("It did not answer in time.")));
    release.set_value();
    ASSERT_EQ(ended->get_future().wait_for(plenty), std::future_status::ready);
    EXPECT_EQ(phone.log->lines().size(), 1U);
}

TEST(NetworkManagerNetworks, question_hasOneDeadlineForAllThatItAsks) {
    doubles::Phone phone;
    NetworkManagerNetworks::Clock::time_point deadline;
    NetworkManagerNetworks networks(
        [&](auto given) {
            deadline = given;
            return Answer(SavedNetworks{});
        },
        plenty);
    const auto before = NetworkManagerNetworks::Clock::now();
    networks.knownSSIDs();
    EXPECT_GE(deadline, before + plenty);
    EXPECT_LE(deadline, NetworkManagerNetworks::Clock::now() + plenty);
    static_assert(NetworkManagerNetworks::patience < 2s);
}

TEST(SavedConnections, deadlineThatIsOver_isNotWaitedFor) {
    // No bus is looked for any more, the machine's own least of all.
    EXPECT_FALSE(device::askSavedConnections(NetworkManagerNetworks::Clock::time_point::min()));
}

}  // namespace
