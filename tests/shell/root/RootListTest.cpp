// SPDX-License-Identifier: MIT
#include "platform/foundation/NotificationCenter.h"
#include "platform/preferences/PSViewController.h"
#include "shell/base/ProductInfo.h"
#include "tests/shell/root/RootListFixture.h"

namespace quietrix {
namespace {

using doubles::joined;
using doubles::required;
using doubles::rowNames;
using platform::NotificationCenter;
using platform::PSCellType;

using RootList = RootListFixture;

constexpr const char* switchOffNames = "-, Enabled, About, Miscellaneous";

TEST_F(RootList, switchedOff_isHeaderSwitchAboutAndMiscellaneous) {
    addProfile("Work", true);
    switchProductBefore(false);
    open();
    EXPECT_EQ(switchOffNames, rowNames(*screen_));
    EXPECT_EQ(platform::Value(false), cellNamed("Enabled")->controlValue());
}

TEST_F(RootList, rows_areAsDeclared) {
    switchProductBefore(false);
    open();
    const auto& rows = *screen_->specifiers();
    ASSERT_EQ(4U, rows.size());
    EXPECT_TRUE(rows[0]->isGroup());
    EXPECT_EQ("QXPackageHeaderCell", rows[0]->propertyForKey("headerCellClass").stringOr());
    EXPECT_EQ("Quietrix Go", rows[0]->propertyForKey("title").stringOr());
    EXPECT_EQ("Silence your iDevice without noice!!", rows[0]->propertyForKey("subTitle").stringOr());
    EXPECT_EQ(PSCellType::Switch, rows[1]->cellType());
    EXPECT_EQ("com.velmora.quietrix.enabled", rows[1]->identifier());
    EXPECT_EQ("setPreferenceValue:specifier:", rows[1]->setter().selector());
    EXPECT_EQ("preferenceValue:", rows[1]->getter().selector());
    EXPECT_EQ("QXSwitchCell", rows[1]->propertyForKey("cellClass").stringOr());
    EXPECT_EQ("CopyRightHeader", rows[2]->identifier());
    EXPECT_EQ(PSCellType::Link, rows[3]->cellType());
    EXPECT_EQ("Miscellaneous", rows[3]->identifier());
    EXPECT_EQ("QuietrixMiscController", rows[3]->detailControllerClass());
    const auto icon = rows[3]->propertyForKey("iconImage").objectAs<platform::UIImage>();
    ASSERT_NE(nullptr, icon);
    EXPECT_EQ("Misc", icon->name());
}

TEST_F(RootList, switchedOnWithNoProfiles_showsOneNoProfilesRowInEachSection) {
    switchProductBefore(true);
    open();
    EXPECT_EQ(
        "-, Enabled, Active Profiles, No Profiles, Inactive Profiles, No Profiles, About, Miscellaneous",
        rowNames(*screen_));
    EXPECT_EQ(PSCellType::StaticText, rowNamed("No Profiles")->cellType());
    EXPECT_TRUE(rowNamed("No Profiles")->userInfo().isNil());
}

TEST_F(RootList, profiles_standInTheStoresOrderUnderOneIdentifier) {
    addProfile("Zulu", true);
    const auto sleep = addProfile("Sleep", false);
    addProfile("Alpha", true);
    switchProductBefore(true);
    open();
    EXPECT_EQ("-, Enabled, Active Profiles, Zulu, Alpha, Inactive Profiles, Sleep, About, Miscellaneous",
              rowNames(*screen_));
    const auto row = rowNamed("Sleep");
    EXPECT_EQ("title", row->identifier());
    EXPECT_EQ(PSCellType::Link, row->cellType());
    EXPECT_EQ("QuietrixProflePreferencesController", row->detailControllerClass());
    EXPECT_FALSE(row->setter());
    EXPECT_FALSE(row->getter());
    ASSERT_NE(nullptr, row->userInfo().objectAs<QXProfile>());
    EXPECT_EQ(sleep->identifier(), row->userInfo().objectAs<QXProfile>()->identifier());
}

TEST_F(RootList, switchedOnWithTwoActiveAndOneInactive_insertsFromIndexTwo) {
    addProfile("A", true);
    addProfile("B", true);
    addProfile("C", false);
    switchProductBefore(false);
    open();
    moveSwitch(true);
    phone_.drain();
    const auto events = phone_.takeEvents();
    std::string kinds;
    std::vector<platform::Dictionary> inserts;
    for (const auto& event : events) {
        const std::string kind = event.at("event").stringOr();
        if (kind == "insert") inserts.push_back(event);
        if (kind == "insert" || kind == "remove" || kind == "reload" || kind == "darwin") kinds += kind + " ";
    }
    EXPECT_EQ("insert insert insert insert insert darwin reload ", kinds);
    EXPECT_EQ("2, 3, 4, 5, 6", joined(inserts, "index"));
    EXPECT_EQ("Active Profiles, A, B, Inactive Profiles, C", joined(inserts, "name"));
    for (const auto& event : inserts) EXPECT_TRUE(event.at("animated").isTrue());
}

TEST_F(RootList, switchedOff_removesFromIndexSixDownToTwo) {
    addProfile("A", true);
    addProfile("B", true);
    addProfile("C", false);
    switchProductBefore(true);
    open();
    moveSwitch(false);
    phone_.drain();
    const auto events = phone_.takeEvents();
    std::vector<platform::Dictionary> removals;
    std::string darwin;
    std::string kinds;
    for (const auto& event : events) {
        const std::string kind = event.at("event").stringOr();
        if (kind == "remove") removals.push_back(event);
        if (kind == "darwin") darwin += event.at("name").stringOr() + " ";
        if (kind == "insert" || kind == "remove" || kind == "reload" || kind == "darwin") kinds += kind + " ";
    }
    EXPECT_EQ("remove remove remove remove remove darwin reload ", kinds);
    EXPECT_EQ("6, 5, 4, 3, 2", joined(removals, "index"));
    EXPECT_EQ("com.velmora.QuietrixEnabledOrDisableNotification ", darwin);
    EXPECT_EQ(switchOffNames, rowNames(*screen_));
}

TEST_F(RootList, switchMoved_writesABinaryListWithTheOtherKeysKept) {
    switchProductBefore(false);
    open();
    moveSwitch(true);
    const auto data = phone_.files->read(settingsPath);
    ASSERT_TRUE(data);
    EXPECT_EQ(platform::PropertyListFormat::Binary,
              platform::PropertyListSerialization::formatOfData(*data).value());
    EXPECT_EQ(
        platform::Value(platform::Dictionary{{"com.velmora.quietrix.enabled", true}, {"other", "kept"}}),
        platform::PropertyListSerialization::propertyListWithData(*data).value());
    EXPECT_EQ("write", phone_.takeEvents("write").at(0).at("event").stringOr());
}

TEST_F(RootList, switchMoved_writesTheSettingsFileInPlace) {
    switchProductBefore(false);
    open();
    const auto before = phone_.files->stamp(settingsPath);
    moveSwitch(true);
    const auto after = phone_.files->stamp(settingsPath);
    ASSERT_TRUE(before && *before && after && *after);
    EXPECT_NE(**before, **after);
    EXPECT_EQ((*before)->inode, (*after)->inode) << "whoever holds the file open goes on seeing it";
}

TEST_F(RootList, settingsFileMissing_storesNothingButPostsAndRebuilds) {
    addProfile("A", true);
    open();
    EXPECT_TRUE(screen_->settings().isNil());
    EXPECT_EQ(platform::Value(false), cellNamed("Enabled")->controlValue());
    moveSwitch(true);
    EXPECT_FALSE(phone_.files->exists(settingsPath));
    const auto events = phone_.takeEvents();
    ASSERT_GE(events.size(), 2U);
    EXPECT_EQ("darwin", events.at(events.size() - 2).at("event").stringOr());
    EXPECT_EQ("reload", events.back().at("event").stringOr());
    EXPECT_EQ(switchOffNames, rowNames(*screen_));
    EXPECT_EQ(platform::Value(false), cellNamed("Enabled")->controlValue());
}

TEST_F(RootList, settingsFileThatIsNoDictionary_isLeftAloneWithOneLogLine) {
    writeSettings(platform::Array{1, 2});
    const auto before = phone_.files->read(settingsPath);
    open();
    moveSwitch(true);
    EXPECT_EQ(before, phone_.files->read(settingsPath));
    ASSERT_EQ(1U, phone_.log->lines().size());
    EXPECT_TRUE(phone_.log->lines()[0].find(settingsPath) != std::string::npos);
}

TEST_F(RootList, settingsThatCannotBeWritten_areLoggedAndKeptInMemory) {
    switchProductBefore(false);
    open();
    phone_.files->failWrites("No space left on device");
    moveSwitch(true);
    ASSERT_EQ(1U, phone_.log->lines().size());
    EXPECT_TRUE(phone_.log->lines()[0].starts_with(
        "com.velmora.Tessane: Error => Unable to save settings to "
        "/var/mobile/Library/Preferences/com.velmora.quietrix.plist and settings: "));
    EXPECT_EQ(platform::Value(true), cellNamed("Enabled")->controlValue());
}

TEST_F(RootList, allDayProfile_showsAllDayAndATimedOneItsHours) {
    const auto timed = addProfile("Timed", true);
    addProfile("Whole", true);
    timed->setAllDay(false);
    timed->setStartTime("9:05 AM");
    timed->setEndTime("11:30 PM");
    QXProfilesManager::sharedManager()->updateProfile_success_failure(timed, nullptr, nullptr);
    phone_.drain();
    switchProductBefore(true);
    open();
    EXPECT_EQ("9:05 AM - 11:30 PM", cellNamed("Timed")->detailTextLabel()->text());
    EXPECT_EQ("All Day", cellNamed("Whole")->detailTextLabel()->text());
    const auto color = cellNamed("Whole")->detailTextLabel()->textColor();
    ASSERT_NE(nullptr, color);
    EXPECT_NE(nullptr, color->patternImage());
    EXPECT_EQ(std::nullopt, cellNamed("Miscellaneous")->detailTextLabel()->text());
}

TEST_F(RootList, allDayProfile_isMarkedInThePhonesLanguage) {
    addProfile("Whole", true);
    switchProductBefore(true);
    phone_.facts->languages = {"de"};
    open();
    EXPECT_EQ("Ganztägig", cellNamed("Whole")->detailTextLabel()->text());
}

TEST_F(RootList, year_isComputedWithEachBuildOfTheRows) {
    switchProductBefore(false);
    currentYear() = 1990;
    open();
    EXPECT_EQ(yearOfPresentDate(), currentYear());
}

TEST_F(RootList, yearEndedWhileShown_isFollowedByTheNextBuild) {
    switchProductBefore(false);
    open();
    const auto year = yearOfPresentDate();
    constexpr double longestYear = 366 * 86400.0;
    phone_.advance(longestYear);
    ASSERT_EQ(year + 1, yearOfPresentDate());
    screen_->reloadSpecifiers();
    EXPECT_EQ("Quietrix Go \u00A9 " + std::to_string(year + 1) + " Velmora. All rights reserved.",
              rowNamed("About")->propertyForKey("footerText").stringOr());
}

TEST_F(RootList, footer_isTheVersionNoticeUntilTheRowsAreRebuilt) {
    switchProductBefore(false);
    open();
    const std::string year = std::to_string(yearOfPresentDate());
    EXPECT_EQ("Version " + doubles::productVersion() + ". Quietrix Go \u00A9 " + year +
                  " Velmora. All rights reserved.",
              rowNamed("About")->propertyForKey("footerText").stringOr());
    screen_->reloadSpecifiers();
    EXPECT_EQ("Quietrix Go \u00A9 " + year + " Velmora. All rights reserved.",
              rowNamed("About")->propertyForKey("footerText").stringOr());
}

TEST_F(RootList, rightButtons_areAddOutermostAndShare) {
    switchProductBefore(false);
    open();
    const auto& items = screen_->navigationItem()->rightBarButtonItems();
    ASSERT_EQ(2U, items.size());
    EXPECT_EQ(4, items[0]->systemItem());
    EXPECT_EQ("addProfileAction:", items[0]->action().selector());
    EXPECT_EQ("twitter", required(items[1]->image())->name());
    EXPECT_EQ("__tessaneTwitterAction:", items[1]->action().selector());
}

TEST_F(RootList, eachNotification_reloadsTheStoreAndRebuildsLater) {
    switchProductBefore(true);
    open();
    for (const auto* name :
         {"com.velmora.ProfileAddedNotification", "com.velmora.ProfileChangedNotification",
          "com.velmora.ProfileDeletedNotification", "com.velmora.ProfileAppliedStateChangedNotification"}) {
        phone_.takeEvents();
        post(name);
        EXPECT_EQ(1U, phone_.takeEvents("store").size()) << name;
        phone_.drain();
        EXPECT_EQ(1U, phone_.takeEvents("reload").size()) << name;
    }
}

TEST_F(RootList, profileAddedElsewhere_appearsAfterTheNotification) {
    switchProductBefore(true);
    open();
    addProfile("Later", true);
    EXPECT_NE(nullptr, findRow("Later"));
}

TEST_F(RootList, rebuild_keepsTheRowsOfProfilesThatAreStillTheSame) {
    switchProductBefore(true);
    addProfile("Home", true);
    addProfile("Work", true);
    open();
    const auto home = rowNamed("Home");
    const auto work = rowNamed("Work");
    const auto changed = QXProfilesManager::sharedManager()->enabledProfiles().at(1);
    changed->setVibrate(true);
    QXProfilesManager::sharedManager()->updateProfile_success_failure(changed, nullptr, nullptr);
    phone_.drain();
    EXPECT_EQ(rowNamed("Home"), home);
    EXPECT_NE(rowNamed("Work"), work) << "the store has another record of it";
    EXPECT_EQ(rowNamed("Work")->userInfo().object(),
              QXProfilesManager::sharedManager()->enabledProfiles().at(1));
}

TEST_F(RootList, rebuild_givesARowAnewThatWasGivenAnotherRecordOrName) {
    switchProductBefore(true);
    addProfile("Work", true);
    open();
    const auto record = QXProfilesManager::sharedManager()->enabledProfiles().front();
    rowNamed("Work")->setUserInfo(QXProfile::defaultProfile());
    post("com.velmora.ProfileChangedNotification");
    phone_.drain();
    EXPECT_EQ(rowNamed("Work")->userInfo().object(), record);
    rowNamed("Work")->setName("Other");
    post("com.velmora.ProfileChangedNotification");
    phone_.drain();
    EXPECT_EQ(rowNamed("Work")->userInfo().object(), record);
}

TEST_F(RootList, rebuild_holdsNoProfileThatHasGone) {
    switchProductBefore(true);
    addProfile("Home", true);
    addProfile("Work", false);
    open();
    const std::weak_ptr<QXProfile> gone = QXProfilesManager::sharedManager()->disabledProfiles().at(0);
    QXProfilesManager::sharedManager()->deleteProfile_success_failure(gone.lock(), nullptr, nullptr);
    phone_.drain();
    // Once more: now nobody has rows of before.
    post("com.velmora.ProfileChangedNotification");
    phone_.drain();
    EXPECT_EQ(nullptr, findRow("Work"));
    EXPECT_TRUE(gone.expired());
}

TEST_F(RootList, notificationAfterTheScreenIsGone_doesNothing) {
    switchProductBefore(true);
    open();
    post("com.velmora.ProfileChangedNotification");
    const std::weak_ptr<QuietrixPreferencesController> weak = screen_;
    screen_ = nullptr;
    navigation_ = nullptr;
    phone_.show(nullptr);
    EXPECT_TRUE(weak.expired());
    EXPECT_EQ(0U,
              NotificationCenter::defaultCenter().observerCount("com.velmora.ProfileChangedNotification"));
    phone_.takeEvents();
    phone_.drain();
    EXPECT_TRUE(phone_.takeEvents("reload").empty());
}

TEST_F(RootList, addButton_presentsTheEditorForANewProfile) {
    switchProductBefore(true);
    open();
    screen_->navigationItem()->rightBarButtonItems().at(0)->press();
    const auto modal = std::dynamic_pointer_cast<platform::UINavigationController>(doubles::Phone::top());
    ASSERT_NE(nullptr, modal);
    ASSERT_NE(navigation_, modal);
    const auto editor = std::dynamic_pointer_cast<platform::PSViewController>(modal->topViewController());
    ASSERT_NE(nullptr, editor);
    EXPECT_EQ("New Profile", required(editor->specifier())->name());
    EXPECT_EQ("title", required(editor->specifier())->identifier());
    const auto profile = required(editor->specifier())->userInfo().objectAs<QXProfile>();
    ASSERT_NE(nullptr, profile);
    EXPECT_TRUE(profile->isNewProfile());
    EXPECT_TRUE(QXProfilesManager::sharedManager()->enabledProfiles().empty());
}

}  // namespace
}  // namespace quietrix
