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
using device::SavedNetworksSoFar;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Outcome = platform::Result<void>;
using namespace std::chrono_literals;

constexpr auto plenty = 60s;

TEST(NetworkManagerNetworks, answer_isGivenWithItsFaultsLogged) {
    doubles::Phone phone;
    NetworkManagerNetworks networks(
        [](auto, auto& soFar) {
            soFar.setListed(4);
            soFar.add("b");
            soFar.add(platform::failure("left out"));
            soFar.add(std::nullopt);
            soFar.add("a");
            return Outcome();
        },
        plenty);
    EXPECT_THAT(networks.knownSSIDs(), ElementsAre("b", "a"));
    EXPECT_THAT(phone.log->lines(), ElementsAre("left out"));
}

TEST(NetworkManagerNetworks, refusal_isEmptyWithOneLine) {
    doubles::Phone phone;
    NetworkManagerNetworks networks([](auto, auto&) { return Outcome(platform::failure("No bus.")); },
                                    plenty);
    EXPECT_THAT(networks.knownSSIDs(), IsEmpty());
    EXPECT_THAT(phone.log->lines(),
                ElementsAre("The network manager's Wi-Fi networks could not be had: No bus."));
}

TEST(NetworkManagerNetworks, whatTheLibraryThrows_isALineToo) {
    doubles::Phone phone;
    NetworkManagerNetworks networks([](auto, auto&) -> Outcome { throw std::runtime_error("broken"); },
                                    plenty);
    EXPECT_THAT(networks.knownSSIDs(), IsEmpty());
    EXPECT_THAT(phone.log->lines(), ElementsAre(HasSubstr("broken")));
}

TEST(NetworkManagerNetworks, managerThatNeverAnswers_isGivenUp) {
    doubles::Phone phone;
    std::promise<void> release;
    auto ended = std::make_shared<std::promise<void>>();
    NetworkManagerNetworks networks(
        [released = release.get_future().share(), ended](auto, auto& soFar) {
            released.wait();
            soFar.setListed(1);
            soFar.add("too late");
            ended->set_value();
            return Outcome();
        },
        0s);
    // The question is still waiting when this returns: nothing else releases it.
    EXPECT_THAT(networks.knownSSIDs(), IsEmpty());
    EXPECT_THAT(phone.log->lines(), ElementsAre(HasSubstr("It did not answer in time.")));
    release.set_value();
    ASSERT_EQ(ended->get_future().wait_for(plenty), std::future_status::ready);
    EXPECT_EQ(phone.log->lines().size(), 1U);
}

TEST(NetworkManagerNetworks, answersBeforeAFailure_count) {
    doubles::Phone phone;
    NetworkManagerNetworks networks(
        [](auto, auto& soFar) {
            soFar.setListed(3);
            soFar.add("first");
            soFar.add(platform::failure("left out"));
            return Outcome(platform::failure("It did not answer in time."));
        },
        plenty);
    EXPECT_THAT(networks.knownSSIDs(), ElementsAre("first"));
    EXPECT_THAT(phone.log->lines(),
                ElementsAre("left out",
                            "The network manager's Wi-Fi networks are incomplete, 2 of 3 saved "
                            "connections were read: It did not answer in time."));
}

TEST(NetworkManagerNetworks, answersBeforeTheDeadline_countWhileTheRestIsWaitedFor) {
    doubles::Phone phone;
    std::promise<void> release;
    const auto released = release.get_future().share();
    std::vector<std::shared_ptr<std::promise<void>>> ends;
    std::vector<std::string> names;
    // However long a busy machine takes to get as far as the first answer.
    for (auto limit = 1ms; names.empty() && limit < plenty; limit *= 2) {
        ends.push_back(std::make_shared<std::promise<void>>());
        NetworkManagerNetworks networks(
            [released, ended = ends.back()](auto, auto& soFar) {
                soFar.setListed(2);
                soFar.add("first");
                released.wait();
                soFar.add("too late");
                ended->set_value();
                return Outcome();
            },
            limit);
        names = networks.knownSSIDs();
    }
    EXPECT_THAT(names, ElementsAre("first"));
    EXPECT_THAT(phone.log->lines().back(), HasSubstr("are incomplete, 1 of 2 saved connections were read"));
    release.set_value();
    for (const auto& end : ends) ASSERT_EQ(end->get_future().wait_for(plenty), std::future_status::ready);
}

TEST(NetworkManagerNetworks, question_hasOneDeadlineForAllThatItAsks) {
    doubles::Phone phone;
    NetworkManagerNetworks::Clock::time_point deadline;
    NetworkManagerNetworks networks(
        [&](auto given, auto&) {
            deadline = given;
            return Outcome();
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
    SavedNetworksSoFar soFar;
    EXPECT_FALSE(device::askSavedConnections(NetworkManagerNetworks::Clock::time_point::min(), soFar));
}

}  // namespace
