// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/eventkit/EKEventStore.h"
#include "tests/doubles/Phone.h"

namespace {

using platform::EKEventStore;
using platform::UIColor;
using platform::Value;
using testing::ElementsAre;

TEST(EKEventStore, devicesCalendars_comeAsObjectsInItsOrder) {
    doubles::Phone phone;
    phone.calendars->entries = {{"Work/b", "Meetings", "Work", 0xFF8000},
                                {"Home/a", "Private", "Home", 0x0000FF}};
    const auto calendars = EKEventStore().calendars();
    ASSERT_EQ(calendars.size(), 2U);
    EXPECT_EQ(calendars[0]->title(), "Meetings");
    EXPECT_EQ(calendars[0]->calendarIdentifier(), "Work/b");
    EXPECT_EQ(calendars[0]->sourceTitle(), "Work");
    EXPECT_TRUE(
        calendars[0]->CGColor()->isEqual(*UIColor::colorWithRed_green_blue_alpha(1, 128.0 / 255, 0, 1)));
    EXPECT_EQ(calendars[1]->title(), "Private");
    EXPECT_TRUE(calendars[1]->CGColor()->isEqual(*UIColor::colorWithRed_green_blue_alpha(0, 0, 1, 1)));
}

TEST(EKEventStore, askedAgain_givesWhatTheDeviceHasNow) {
    doubles::Phone phone;
    const EKEventStore store;
    EXPECT_TRUE(store.calendars().empty());
    phone.calendars->entries = {{"Home/a", "Private", "Home", 0}};
    EXPECT_EQ(store.calendars().size(), 1U);
}

TEST(EKEventStore, deviceWithoutCalendars_hasNone) {
    doubles::Phone phone;
    phone.calendars = nullptr;
    phone.install();
    EXPECT_TRUE(EKEventStore().calendars().empty());
}

TEST(EKCalendar, noColour_isBlack) {
    const platform::EKCalendar calendar("A", "a", "Home", nullptr);
    EXPECT_TRUE(calendar.CGColor()->isEqual(*UIColor::blackColor()));
}

TEST(EKCalendar, keys_giveWhatThePropertiesDo) {
    const doubles::Phone phone;
    const platform::EKCalendar calendar("A", "Home/a", "Home", UIColor::redColor());
    EXPECT_EQ(calendar.valueForKey("title"), Value("A"));
    EXPECT_EQ(calendar.valueForKey("identifier"), Value("Home/a"));
    EXPECT_EQ(calendar.valueForKey("calendarIdentifier"), Value("Home/a"));
    EXPECT_EQ(calendar.valueForKey("sourceTitle"), Value("Home"));
    EXPECT_EQ(calendar.valueForKey("CGColor").object(), calendar.CGColor());
    EXPECT_TRUE(phone.log->lines().empty());
    EXPECT_TRUE(calendar.valueForKey("events").isNil());
    EXPECT_THAT(phone.log->lines(), ElementsAre("A calendar has no key \"events\"."));
}

TEST(EKCalendar, setting_changesNothingAndIsLogged) {
    const doubles::Phone phone;
    platform::EKCalendar calendar("A", "Home/a", "Home", nullptr);
    calendar.setValue_forKey("B", "title");
    EXPECT_EQ(calendar.title(), "A");
    EXPECT_THAT(phone.log->lines(),
                ElementsAre("A calendar is read-only; its key \"title\" was not changed."));
}

}  // namespace
