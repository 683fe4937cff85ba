// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "platform/eventkit/EKCalendar.h"
#include "profile/model/QXEventManager.h"
#include "profile/model/QXWiFiManager.h"
#include "tests/doubles/Phone.h"
#include "tests/doubles/Required.h"

namespace quietrix {
namespace {

using doubles::required;
using platform::Array;
using platform::Dictionary;
using platform::EKCalendar;
using platform::Value;

std::string titles(const Value& calendars) {
    std::string text;
    for (const auto& entry : *required(calendars.array())) {
        text += (text.empty() ? "" : ", ") + required(entry.objectAs<EKCalendar>())->title();
    }
    return text;
}

TEST(QXEventManager, calendars_areGroupedByAccountInThePhonesOrder) {
    const doubles::Phone phone;
    phone.calendars->entries = {
        {"1", "Zebra", "Home", 0}, {"2", "Work", "Office", 0}, {"3", "Apple", "Home", 0}};
    const Value groups = QXEventManager::sharedManager()->groupedCalendars();
    ASSERT_EQ(2U, required(groups.dictionary())->size());
    EXPECT_EQ("Zebra, Apple", titles(groups["Home"]));
    EXPECT_EQ("Work", titles(groups["Office"]));
}

TEST(QXEventManager, calendarsThatChanged_areSeenTheNextTime) {
    const doubles::Phone phone;
    EXPECT_EQ(Value(Dictionary()), QXEventManager::sharedManager()->groupedCalendars());
    phone.calendars->entries = {{"1", "One", "Home", 0}};
    EXPECT_EQ("One", titles(QXEventManager::sharedManager()->groupedCalendars()["Home"]));
}

TEST(QXEventManager, phoneWithoutCalendars_givesNone) {
    doubles::Phone phone;
    phone.calendars.reset();
    phone.install();
    EXPECT_EQ(Value(Dictionary()), QXEventManager::sharedManager()->groupedCalendars());
}

TEST(QXWiFiManager, networks_areThePhonesInItsOrder) {
    const doubles::Phone phone;
    phone.networks->ssids = {"B", "A", "B"};
    EXPECT_EQ(Value(Array{Dictionary{{"SSID", "B"}}, Dictionary{{"SSID", "A"}}, Dictionary{{"SSID", "B"}}}),
              QXWiFiManager::sharedManager()->knownNetworks());
}

TEST(QXWiFiManager, phoneWithoutNetworks_givesNone) {
    doubles::Phone phone;
    phone.networks.reset();
    phone.install();
    EXPECT_EQ(Value(Array()), QXWiFiManager::sharedManager()->knownNetworks());
}

}  // namespace
}  // namespace quietrix
