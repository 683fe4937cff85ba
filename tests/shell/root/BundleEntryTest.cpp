// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "platform/foundation/NotificationCenter.h"
#include "profile/model/QXProfilesManager.h"
#include "shell/root/BundleEntry.h"
#include "tests/doubles/PluginPhone.h"

namespace quietrix {
namespace {

using platform::DarwinNotificationCenter;

class Relay : public testing::Test {
  protected:
    Relay() {
        CHConstructor2386();
        QXProfilesManager::sharedManager();
        phone_.drain();
        phone_.takeEvents();
    }
    /// What follows when another process posts the name: the kinds of events in their order, local names
    /// spelled out.
    std::string eventsAfter(const std::string& name) {
        phone_.notifications->post(name);
        phone_.drain();
        std::string text;
        for (const auto& event : phone_.takeEvents()) {
            const platform::Value value(event);
            if (!text.empty()) text += "; ";
            text += value["event"].stringOr();
            if (value["call"]) text += " " + value["call"].stringOr();
            if (value["name"])
                text += " " + value["name"].stringOr().substr(std::string("com.velmora.").size());
        }
        return text;
    }

    doubles::PluginPhone phone_;
};

TEST_F(Relay, constructor_registersFourObserversInOrder) {
    const auto registrations = DarwinNotificationCenter::shared().registrations();
    ASSERT_EQ(4U, registrations.size());
    EXPECT_EQ("com.velmora.ProfileAppliedStateChangedNotification", registrations[0].name);
    EXPECT_EQ("com.velmora.ProfileAddedNotification", registrations[1].name);
    EXPECT_EQ("com.velmora.ProfileChangedNotification", registrations[2].name);
    EXPECT_EQ("com.velmora.ProfileDeletedNotification", registrations[3].name);
    EXPECT_EQ(&profileAppliedCallBack, registrations[0].callback);
    for (const auto& registration : registrations) {
        EXPECT_EQ(nullptr, registration.observer);
        EXPECT_EQ(4, static_cast<int>(registration.suspensionBehavior));
    }
    for (std::size_t index = 1; index < 4; ++index) {
        EXPECT_EQ(&profileDataChangedCallBack, registrations[index].callback);
    }
}

TEST_F(Relay, deletedProfile_isFoldedIntoOneAppliedStateChangeWithoutAReload) {
    EXPECT_EQ("darwinReceived ProfileDeletedNotification; local ProfileAppliedStateChangedNotification",
              eventsAfter("com.velmora.ProfileDeletedNotification"));
}

TEST_F(Relay, addedAndChangedProfiles_areFoldedToo) {
    EXPECT_EQ("darwinReceived ProfileAddedNotification; local ProfileAppliedStateChangedNotification",
              eventsAfter("com.velmora.ProfileAddedNotification"));
    EXPECT_EQ("darwinReceived ProfileChangedNotification; local ProfileAppliedStateChangedNotification",
              eventsAfter("com.velmora.ProfileChangedNotification"));
}

TEST_F(Relay, appliedProfile_reloadsTheStoreAndThenPostsTheSameName) {
    EXPECT_EQ(
        "darwinReceived ProfileAppliedStateChangedNotification; store reload; "
        "local ProfileAppliedStateChangedNotification",
        eventsAfter("com.velmora.ProfileAppliedStateChangedNotification"));
}

TEST_F(Relay, otherName_isLeftAlone) {
    EXPECT_EQ("darwinReceived QuietrixEnabledOrDisableNotification",
              eventsAfter("com.velmora.QuietrixEnabledOrDisableNotification"));
}

}  // namespace
}  // namespace quietrix
