// SPDX-License-Identifier: MIT
#include <algorithm>

#include "conditions/networks/QuietrixWifiController.h"
#include "platform/preferences/PSSwitchTableCell.h"
#include "shell/base/NotificationNames.h"
#include "tests/conditions/PickerFixture.h"

namespace quietrix {
namespace {

using doubles::required;
using platform::Dictionary;
using platform::Value;

class NetworksPicker : public ListPickerFixture<QuietrixWifiController> {
  protected:
    NetworksPicker() { phone_.networks->ssids = {"Office", "Café ☕", "Attic"}; }
    bool isOn(std::string_view ssid) { return cellOf(ssid)->controlValue().isTrue(); }
    using List = std::vector<std::string>;
};

TEST_F(NetworksPicker, rows_areTheKnownNetworksInTheirOrder) {
    open();
    const auto rows = ownRows();
    ASSERT_EQ(phone_.networks->ssids.size(), rows.size());
    for (std::size_t index = 0; index < rows.size(); ++index) {
        const auto& row = *rows[index];
        const std::string& ssid = phone_.networks->ssids[index];
        EXPECT_EQ(ssid, row.name());
        EXPECT_EQ(ssid, row.identifier());
        EXPECT_EQ(platform::PSCellType::Switch, row.cellType());
        EXPECT_EQ("QXSwitchCell", row.propertyForKey("cellClass").stringOr());
        EXPECT_EQ("setPreferenceValue:specifier:", row.setter().selector());
        EXPECT_FALSE(row.getter());
        EXPECT_EQ(screen_, row.target());
        EXPECT_EQ(Value(Dictionary{{"SSID", ssid}}), row.userInfo());
    }
}

TEST_F(NetworksPicker, heldNetwork_showsItsSwitchOn) {
    profile_->setWifiNetworks({"Attic"});
    open();
    EXPECT_FALSE(isOn("Office"));
    EXPECT_TRUE(isOn("Attic"));
    EXPECT_TRUE(screen_->isWiFiSelected("Attic"));
    EXPECT_FALSE(screen_->isWiFiSelected("Elsewhere"));
}

TEST_F(NetworksPicker, switchedOff_isRemovedAndSaved) {
    profile_->setWifiNetworks({"Attic", "Office"});
    open();
    move("Attic", false);
    EXPECT_EQ(1U, storeCalls());
    EXPECT_EQ((List{"Office"}), required(stored())->wifiNetworks());
}

TEST_F(NetworksPicker, movedAnyWay_togglesWhatIsStored) {
    open();
    move("Office", false);
    EXPECT_EQ((List{"Office"}), profile_->wifiNetworks()) << "off, and yet added: it was not there";
    screen_->setPreferenceValue_specifier(true, rowOf("Office"));
    EXPECT_TRUE(profile_->wifiNetworks().empty());
}

TEST_F(NetworksPicker, saved_holdsTheStoresProfileAndNothingElse) {
    open(Dictionary{{"leftover", "dropped"}});
    move("Office", true);
    EXPECT_EQ(2U, required(row_->userInfo().dictionary())->size()) << "only after the store has answered";
    phone_.drain();
    ASSERT_EQ(1U, required(row_->userInfo().dictionary())->size());
    EXPECT_NE(profile_, shown());
    EXPECT_EQ((List{"Office"}), required(shown())->wifiNetworks());
}

TEST_F(NetworksPicker, appliedStateChanged_holdsTheStoresProfileAndNothingElse) {
    open(Dictionary{{"leftover", "dropped"}});
    storeElsewhere("wifiNetworks", platform::Array{"Attic"});
    const auto rows = *screen_->specifiers();
    EXPECT_FALSE(isOn("Attic"));
    post(ProfileAppliedStateChangedNotification);
    EXPECT_EQ(1U, required(row_->userInfo().dictionary())->size());
    EXPECT_EQ((List{"Attic"}), required(shown())->wifiNetworks());
    EXPECT_EQ(rows, *screen_->specifiers());
    const auto redrawn = screen_->tableView_cellForRowAtIndexPath(screen_->table(), pathOf("Attic"));
    ASSERT_NE(nullptr, redrawn);
    EXPECT_TRUE(redrawn->controlValue().isTrue());
}

TEST_F(NetworksPicker, twoOfOneName_areTwoRowsOfOneEntry) {
    phone_.networks->ssids = {"Office", "Office"};
    profile_->setWifiNetworks({"Office"});
    open();
    const auto rows = ownRows();
    ASSERT_EQ(2U, rows.size());
    EXPECT_EQ(rows[0]->identifier(), rows[1]->identifier());
    EXPECT_NE(rows[0], rows[1]);
    EXPECT_TRUE(cellAt(0)->controlValue().isTrue());
    EXPECT_TRUE(cellAt(1)->controlValue().isTrue());
    ASSERT_TRUE(cellAt(1)->userMovedControl(false));
    EXPECT_TRUE(profile_->wifiNetworks().empty());
    phone_.drain();
    screen_->reloadSpecifiers();
    EXPECT_FALSE(cellAt(0)->controlValue().isTrue());
    EXPECT_FALSE(cellAt(1)->controlValue().isTrue());
}

TEST_F(NetworksPicker, switchOfTwoOfOneName_takesTheOtherWithItAndNoMore) {
    phone_.networks->ssids = {"Office", "Attic", "Office"};
    open();
    const auto moved = cellAt(0);
    const auto other = cellAt(1);
    const auto twin = cellAt(2);
    const auto rows = *screen_->specifiers();
    ASSERT_TRUE(moved->userMovedControl(true));
    phone_.drain();
    EXPECT_NE(twin, cellAt(2));
    EXPECT_TRUE(cellAt(2)->controlValue().isTrue());
    EXPECT_EQ(moved, cellAt(0));
    EXPECT_EQ(other, cellAt(1));
    EXPECT_EQ(rows, *screen_->specifiers());
    const auto events = phone_.takeEvents();
    const auto count = [&](std::string_view kind) {
        return std::ranges::count_if(events,
                                     [&](const auto& event) { return event.at("event") == Value(kind); });
    };
    EXPECT_EQ(1, count("store"));
    EXPECT_EQ(0, count("reload") + count("insert") + count("remove"));
}

TEST_F(NetworksPicker, switchOfTwoOfOneName_takesTheOtherWithItInANewProfileToo) {
    profile_->setNewProfile(true);
    phone_.networks->ssids = {"Office", "Office"};
    open();
    ASSERT_FALSE(cellAt(0)->controlValue().isTrue());
    ASSERT_TRUE(cellAt(1)->userMovedControl(true));
    EXPECT_TRUE(cellAt(0)->controlValue().isTrue());
    EXPECT_EQ(0U, storeCalls());
}

TEST_F(NetworksPicker, newProfile_isChangedInMemoryOnly) {
    profile_->setNewProfile(true);
    open();
    move("Office", true);
    EXPECT_EQ(0U, storeCalls());
    EXPECT_EQ((List{"Office"}), profile_->wifiNetworks());
    EXPECT_EQ(profile_, shown());
}

TEST_F(NetworksPicker, appliedStateChanged_leavesANewProfileItsChoices) {
    profile_->setNewProfile(true);
    open(Dictionary{{"leftover", "dropped"}});
    move("Office", true);
    post(ProfileAppliedStateChangedNotification);
    EXPECT_EQ(Value(Dictionary{{"profile", profile_}}), row_->userInfo());
    move("Attic", true);
    EXPECT_EQ((List{"Office", "Attic"}), profile_->wifiNetworks());
    EXPECT_EQ(0U, storeCalls());
    EXPECT_EQ(nullptr, alert());
}

TEST_F(NetworksPicker, profileGoneBeforeTheStoreAnswers_staysTheScreensOwn) {
    open();
    move("Office", true);
    deleteElsewhere();
    ASSERT_EQ(nullptr, stored());
    phone_.drain();
    EXPECT_EQ(Value(Dictionary{{"profile", profile_}}), row_->userInfo());
}

TEST_F(NetworksPicker, networksLearntMeanwhile_comeWithTheNextScreen) {
    open();
    phone_.networks->ssids.push_back("Garden");
    screen_->reloadSpecifiers();
    EXPECT_EQ(-1, indexOf("Garden"));
    screen_ = std::make_shared<QuietrixWifiController>();
    screen_->setSpecifier(row_);
    navigation_->pushViewController_animated(screen_, false);
    EXPECT_EQ(3, indexOf("Garden"));
}

TEST_F(NetworksPicker, noNetworks_leaveTheScreenEmpty) {
    phone_.networks->ssids.clear();
    open();
    EXPECT_TRUE(ownRows().empty());
    EXPECT_TRUE(screen_->wifiSpecifiers()->empty());
}

TEST_F(NetworksPicker, failedSave_showsTheErrorAndKeepsTheSwitch) {
    open();
    failWrites();
    move("Office", true);
    phone_.drain();
    ASSERT_NE(nullptr, alert());
    EXPECT_EQ("Error", alert()->title());
    EXPECT_TRUE(isOn("Office"));
    EXPECT_EQ((List{"Office"}), profile_->wifiNetworks());
}

TEST_F(NetworksPicker, chrome_isTheProducts) {
    open();
    expectProductsChrome();
}

TEST_F(NetworksPicker, closed_isNotKeptAlive) {
    open();
    move("Office", true);
    EXPECT_TRUE(closesForGood());
    post(ProfileAppliedStateChangedNotification);
}

}  // namespace
}  // namespace quietrix
