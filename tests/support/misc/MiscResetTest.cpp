// SPDX-License-Identifier: MIT
#include "platform/uikit/UIApplication.h"
#include "profile/model/ProfileHistory.h"
#include "shell/base/Localization.h"
#include "tests/support/misc/MiscFixture.h"

namespace quietrix {
namespace {

using doubles::required;
using platform::PSCellType;
using platform::Value;

class Misc : public MiscFixture {};

TEST_F(Misc, rows_areAsDeclared) {
    open();
    ASSERT_EQ(4U, screen_->specifiers()->size());
    const auto resetGroup = rowAt(0);
    EXPECT_EQ("Reset Profiles", resetGroup->name());
    EXPECT_TRUE(resetGroup->isGroup());
    EXPECT_EQ("If there is any problem with configured profiles, use this option to reset all profiles.",
              footerAt(0));
    const auto contactGroup = rowAt(2);
    EXPECT_EQ("Contact Velmora", contactGroup->name());
    EXPECT_EQ("CopyRightHeader", contactGroup->identifier());

    const auto reset = questionRow("resetProfiles");
    EXPECT_EQ("Reset Profiles", reset->name());
    EXPECT_EQ("resetProfiles", reset->identifier());
    EXPECT_EQ(PSCellType::Button, reset->cellType());
    EXPECT_EQ(screen_, reset->target());
    EXPECT_EQ(Value(true), reset->propertyForKey("isDestructive"));
    EXPECT_EQ("OK", reset->okButton());
    EXPECT_EQ("Cancel", reset->cancelButton());
    EXPECT_EQ("Are you sure you want to continue? Your device will repsring once done.", reset->prompt());
    EXPECT_EQ("Continue", reset->title());
    EXPECT_EQ("showActivityIndicator:", reset->buttonAction().selector());

    const auto report = questionRow("report");
    EXPECT_EQ("Report Problem", report->name());
    EXPECT_EQ("report", report->identifier());
    EXPECT_EQ(PSCellType::Button, report->cellType());
    EXPECT_EQ(Value(false), report->propertyForKey("isDestructive"));
    EXPECT_EQ("email", required(report->propertyForKey("iconImage").objectAs<platform::UIImage>())->name());
    EXPECT_EQ("Send Now", report->okButton());
    EXPECT_EQ("Cancel", report->cancelButton());
    EXPECT_EQ("Are you sure you want to share log file with Velmora Support Team?", report->prompt());
    EXPECT_EQ("Send Now", report->title());
    EXPECT_EQ("emailLogFile:", report->buttonAction().selector());
}

TEST_F(Misc, inAnotherLanguage_translatesTheRowNamesOnly) {
    phone_.facts->languages = {"de"};
    open();
    EXPECT_EQ("Profile zurücksetzen", questionRow("resetProfiles")->name());
    EXPECT_EQ("OK", questionRow("resetProfiles")->okButton());
    EXPECT_TRUE(questionRow("resetProfiles")->prompt().starts_with("Are you sure"));
    EXPECT_TRUE(footerAt(0).starts_with("If there is any problem"));
    EXPECT_EQ("Send Now", questionRow("report")->title());
}

TEST_F(Misc, rowsAskedForAgain_areTheSame) {
    open();
    const auto list = screen_->specifiers();
    const auto main = screen_->mainSettingsSpecifiers();
    EXPECT_EQ(list, screen_->specifiers());
    EXPECT_EQ(main, screen_->mainSettingsSpecifiers());
    screen_->reloadSpecifiers();
    ASSERT_FALSE(main->empty());
    EXPECT_EQ(main->front(), rowAt(0));
}

TEST_F(Misc, footer_isTheCopyrightUntilTheViewHasLoadedAndThenTheVersion) {
    currentYear() = 2026;
    screen_ = std::make_shared<QuietrixMiscController>();
    const std::string before = footerAt(2);
    EXPECT_EQ(std::string::npos, before.find("Version"));
    EXPECT_NE(std::string::npos, before.find("2026"));
    screen_->view();
    EXPECT_EQ("Version " + doubles::productVersion() + ". Quietrix Go " + before, footerAt(2));
}

TEST_F(Misc, confirmed_showsTheProgressAndResetsTwoSecondsLater) {
    addProfile();
    open();
    confirmReset();
    ASSERT_NE(nullptr, alert());
    EXPECT_EQ("Resetting", alert()->title());
    EXPECT_EQ("Your device will be respring once it is done.", alert()->message());
    EXPECT_TRUE(alert()->actions().empty());
    phone_.advance(1.9);
    EXPECT_TRUE(hasProfilesFile());
    EXPECT_TRUE(required(screen_->activityAlert())->isVisible());
    phone_.advance(0.1);
    EXPECT_FALSE(hasProfilesFile());
    EXPECT_EQ(nullptr, alert());
    EXPECT_EQ(std::vector<std::string>{"SpringBoard"}, phone_.processes->killed);
    for (const auto& event : phone_.takeEvents()) {
        const std::string kind = event.at("event").stringOr();
        EXPECT_TRUE(kind != "local" && kind != "darwin") << "nothing is posted: " << kind;
    }
    EXPECT_NE(nullptr, screen_->activityAlert()) << "kept until the next reset";
}

TEST_F(Misc, progress_isInThePhonesLanguage) {
    phone_.facts->languages = {"de"};
    addProfile();
    open();
    confirmReset();
    ASSERT_NE(nullptr, alert());
    EXPECT_EQ("Zurücksetzen …", alert()->title());
    EXPECT_EQ("Danach wird die Oberfläche deines Geräts neu gestartet.", alert()->message());
}

TEST_F(Misc, withoutAFile_showsTheErrorAndKillsNothing) {
    open();
    confirmReset();
    phone_.advance(2.0);
    ASSERT_NE(nullptr, alert());
    EXPECT_EQ("Error", alert()->title());
    EXPECT_EQ("Unable to reset the profiles. Please try again after some time.", alert()->message());
    ASSERT_EQ(1U, alert()->actions().size());
    EXPECT_EQ("Close", alert()->actions()[0].title);
    EXPECT_TRUE(phone_.processes->killed.empty());
    EXPECT_TRUE(phone_.log->lines().empty());
    EXPECT_FALSE(required(screen_->activityAlert())->isVisible());
    alert()->choose(0);
    EXPECT_EQ(nullptr, alert());
}

TEST_F(Misc, fileThatCannotBeRemoved_isLoggedAndShown) {
    addProfile();
    open();
    phone_.files->failRemovals("Permission denied", std::string(profilesPath));
    confirmReset();
    phone_.advance(2.0);
    ASSERT_EQ(1U, phone_.log->lines().size());
    const std::string line = phone_.log->lines().front();
    EXPECT_TRUE(
        line.starts_with("com.velmora.Quietrix: Error => -[QuietrixMiscController resetProfilesInfo:], "
                         "[Line 1500], Error while deleting the configuration file. Error: "))
        << line;
    EXPECT_NE(std::string::npos, line.find("Permission denied"));
    EXPECT_NE(nullptr, alert());
    EXPECT_TRUE(phone_.processes->killed.empty());
    EXPECT_TRUE(hasProfilesFile());
}

/// Puts a profiles file there as another program would, and gives its bytes.
platform::Data putFileOfAnother(doubles::MemoryFileSystem& files) {
    const platform::Dictionary noProfiles{{"format", 1}, {"profiles", platform::Array{}}};
    auto file = platform::PropertyListSerialization::dataWithPropertyList(
        noProfiles, platform::PropertyListFormat::Binary);
    files.put(std::string(profilesPath), *required(file));
    return *std::move(file);
}

TEST_F(Misc, whatWasReset_canBeGoneBackTo) {
    addProfile();
    const platform::Data file = putFileOfAnother(*phone_.files);
    open();
    confirmReset();
    phone_.advance(2.0);
    EXPECT_FALSE(hasProfilesFile());
    const auto states = *required(ProfileHistory::entries());
    ASSERT_EQ(3U, states.size());
    EXPECT_TRUE(states[0].isAbsence);
    EXPECT_TRUE(QXProfilesManager::sharedManager()->restoreGeneration(2));
    EXPECT_EQ(file, *required(phone_.files->read(profilesPath)));
}

TEST_F(Misc, whatCannotBeKept_isResetAllTheSame) {
    phone_.files->failHistories("No space left on device");
    addProfile();
    open();
    confirmReset();
    phone_.advance(2.0);
    EXPECT_FALSE(hasProfilesFile());
    ASSERT_FALSE(phone_.log->lines().empty());
    EXPECT_TRUE(phone_.log->lines().back().ends_with("in its history: No space left on device."));
}

TEST_F(Misc, cleared_canBeGoneBackTo) {
    const platform::Data file = putFileOfAnother(*phone_.files);
    open();
    EXPECT_TRUE(screen_->resetProfilesInfo(false));
    EXPECT_NE(file, *required(phone_.files->read(profilesPath)));
    EXPECT_TRUE(QXProfilesManager::sharedManager()->restoreGeneration(1));
    EXPECT_EQ(file, *required(phone_.files->read(profilesPath)));
}

TEST_F(Misc, cancelled_changesNothing) {
    addProfile();
    open();
    tapAndChoose("resetProfiles", 1);
    EXPECT_EQ(nullptr, alert());
    phone_.advance(5.0);
    EXPECT_TRUE(hasProfilesFile());
    EXPECT_EQ(nullptr, screen_->activityAlert());
    EXPECT_TRUE(phone_.processes->killed.empty());
}

TEST_F(Misc, rowNamedOtherwiseThanTheHostSays_doesNothing) {
    addProfile();
    open();
    questionRow("resetProfiles")->setName("Reset all");
    confirmReset();
    phone_.advance(5.0);
    EXPECT_EQ(nullptr, screen_->activityAlert());
    EXPECT_TRUE(hasProfilesFile());
}

TEST_F(Misc, inEveryLanguageWeShip_resets) {
    for (const auto* language : {"en", "de", "fr", "es", "ja", "zh-Hans", "ar"}) {
        phone_.facts->languages = {language};
        addProfile();
        open();
        phone_.processes->killed.clear();
        confirmReset();
        phone_.advance(2.0);
        EXPECT_FALSE(hasProfilesFile()) << language;
        EXPECT_EQ(1U, phone_.processes->killed.size()) << language;
    }
}

TEST_F(Misc, secondConfirmationWhilePending_schedulesASecondReset) {
    addProfile();
    open();
    screen_->showActivityIndicator(questionRow("resetProfiles"));
    const auto first = screen_->activityAlert();
    phone_.advance(1.0);
    screen_->showActivityIndicator(questionRow("resetProfiles"));
    EXPECT_NE(first, screen_->activityAlert());
    phone_.advance(1.0);
    EXPECT_EQ(1U, phone_.processes->killed.size());
    EXPECT_FALSE(required(screen_->activityAlert())->isVisible()) << "each reset closes the last one's alert";
    phone_.advance(1.0);
    EXPECT_EQ(1U, phone_.processes->killed.size()) << "the second finds no file";
    ASSERT_NE(nullptr, alert());
    EXPECT_EQ("Unable to reset the profiles. Please try again after some time.", alert()->message());
}

TEST_F(Misc, leftWhilePending_stillResets) {
    addProfile();
    open();
    screen_->showActivityIndicator(questionRow("resetProfiles"));
    const std::weak_ptr<QuietrixMiscController> screen = screen_;
    screen_.reset();
    navigation_->popViewControllerAnimated(false);
    EXPECT_FALSE(screen.expired()) << "the delayed call keeps its target";
    phone_.advance(2.0);
    EXPECT_TRUE(screen.expired());
    EXPECT_FALSE(hasProfilesFile());
}

TEST_F(Misc, cleared_writesAnEmptyDictionaryAndLogsTheSuccess) {
    addProfile();
    open();
    const auto before = phone_.files->stamp(profilesPath).value();
    EXPECT_TRUE(screen_->resetProfilesInfo(false));
    EXPECT_NE(before->inode, phone_.files->stamp(profilesPath).value().value().inode)
        << "replaced as a whole";
    const auto list = platform::PropertyListSerialization::propertyListWithData(
        phone_.files->read(std::string(profilesPath)).value());
    EXPECT_EQ(Value(platform::Dictionary()), list.value());
    EXPECT_EQ((std::vector<std::string>{
                  "com.velmora.Quietrix: Error => -[QuietrixMiscController resetProfilesInfo:], [Line 1508], "
                  "Error while resettings the configuration file."}),
              phone_.log->lines());
}

TEST_F(Misc, clearingThatFails_logsNothing) {
    open();
    EXPECT_FALSE(screen_->resetProfilesInfo(false)) << "no file";
    phone_.files->put(std::string(profilesPath), "no property list");
    EXPECT_FALSE(screen_->resetProfilesInfo(false));
    addProfile();
    phone_.files->put(std::string(profilesPath),
                      platform::PropertyListSerialization::dataWithPropertyList(
                          platform::Dictionary{{"format", 1}}, platform::PropertyListFormat::XML)
                          .value());
    phone_.files->failWrites("No space left on device", std::string(profilesPath));
    EXPECT_FALSE(screen_->resetProfilesInfo(false));
    for (const auto& line : phone_.log->lines()) EXPECT_EQ(std::string::npos, line.find("1508")) << line;
}

TEST_F(Misc, message_isTitledByThePlatformWhateverTitleIsGiven) {
    phone_.facts->languages = {"de"};
    phone_.files->put("/Applications/Settings.app/de.lproj/UIKit.strings",
                      R"("Error" = "Toolkit's error"; "Close" = "Toolkit's close";)");
    open();
    ASSERT_EQ("Fehler", localized("Error"));
    screen_->showMessage_withMessage("Nobody sees this", "Text");
    ASSERT_NE(nullptr, alert());
    EXPECT_EQ("Toolkit's error", alert()->title());
    EXPECT_EQ("Text", alert()->message());
    ASSERT_EQ(1U, alert()->actions().size());
    EXPECT_EQ("Toolkit's close", alert()->actions()[0].title);
}

TEST_F(Misc, chrome_isWornAndGivenBack) {
    phone_.facts->version = "10.3";
    open();
    const auto& item = screen_->navigationItem();
    EXPECT_EQ("twitter", required(required(item->rightBarButtonItem())->image())->name());
    EXPECT_EQ("__tessaneTwitterAction:", required(item->rightBarButtonItem())->action().selector());
    EXPECT_NE(nullptr, item->titleView());
    EXPECT_EQ("Quietrix", required(required(item->backBarButtonItem())->image())->name());
    const auto& bar = navigation_->navigationBar();
    EXPECT_EQ("nav", required(required(bar->barTintColor())->patternImage())->name());
    EXPECT_EQ(nullptr, screen_->prevBarTintcolor());
    navigation_->popViewControllerAnimated(false);
    EXPECT_EQ(nullptr, bar->barTintColor());
    EXPECT_EQ(platform::UIStatusBarStyleDefault,
              platform::UIApplication::sharedApplication().statusBarStyle());
}

TEST_F(Misc, shareButton_opensTheSheet) {
    open();
    screen_->__tessaneTwitterAction(nullptr);
    ASSERT_NE(nullptr, alert());
    EXPECT_EQ(3U, alert()->actions().size());
}

}  // namespace
}  // namespace quietrix
