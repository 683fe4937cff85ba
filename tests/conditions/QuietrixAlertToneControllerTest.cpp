// SPDX-License-Identifier: MIT
#include "conditions/tone/QuietrixAlertToneController.h"
#include "platform/foundation/Journal.h"
#include "shell/base/NotificationNames.h"
#include "shell/base/ProductInfo.h"
#include "tests/conditions/PickerFixture.h"

namespace quietrix {
namespace {

using doubles::required;
using platform::Class;
using platform::ClassRegistry;
using platform::UIColor;

constexpr const char* noSuperclassLine =
    "############ ALERT NO SUPER TONE CONTROLLER CLASS #################";

class TonePicker : public PickerFixture<QuietrixAlertToneController> {
  protected:
    /// Puts the tone screen where it was declared, and the phone's picker as it was.
    ~TonePicker() override {
        standOn(platform::PSViewController::staticClass());
        platform::TKTonePickerViewController::setHasToneStore(true);
    }
    static void standOn(const Class& cls) {
        ClassRegistry::setSuperclass(QuietrixUIToneController::staticClass(), cls);
    }
    static const std::string& superclass() {
        return required(QuietrixUIToneController::staticClass().superclass())->name();
    }
    void openOnSystemScreen() {
        platform::makeToneScreenClassExist("TestToneController");
        standOn(*required(ClassRegistry::shared().find("TestToneController")));
        open();
    }
    platform::TKTonePickerViewController& picker() {
        return *required(screen_->createdTonePickerViewController());
    }
    /// Names of the local notifications and store calls, in order.
    std::string happened() {
        phone_.drain();
        std::string text;
        for (const auto& event : phone_.takeEvents()) {
            const platform::Value value(event);
            const std::string kind = value["event"].stringOr();
            if (kind != "local" && kind != "store") continue;
            text += (text.empty() ? "" : "; ") + value[kind == "local" ? "name" : "call"].stringOr();
        }
        return text;
    }
};

TEST_F(TonePicker, superclass_isChosenAmongTheClassesThatExist) {
    phone_.facts->version = "8.4";
    QuietrixUIToneController::load();
    EXPECT_EQ("PSViewController", superclass());
    EXPECT_TRUE(phone_.log->lines().empty());
    phone_.facts->version = "11.4";
    QuietrixUIToneController::load();
    EXPECT_EQ("PSViewController", superclass());
    EXPECT_EQ(std::vector<std::string>{noSuperclassLine}, phone_.log->lines());

    platform::makeToneScreenClassExist("ToneController");
    QuietrixUIToneController::load();
    EXPECT_EQ("PSViewController", superclass()) << "not for this system version";
    phone_.facts->version = "8.4";
    QuietrixUIToneController::load();
    EXPECT_EQ("ToneController", superclass());

    phone_.facts->version = "9.0";
    platform::makeToneScreenClassExist("SHSToneController");
    QuietrixUIToneController::load();
    EXPECT_EQ("SHSToneController", superclass());
    platform::makeToneScreenClassExist("PSUIToneController");
    QuietrixUIToneController::load();
    EXPECT_EQ("PSUIToneController", superclass());
    EXPECT_EQ("QuietrixUIToneController",
              required(QuietrixAlertToneController::staticClass().superclass())->name());
}

TEST_F(TonePicker, built_isConfiguredAndFillsTheScreenBelowTheBar) {
    profile_->setAlertToneIdentifier("texttone:Chord");
    openOnSystemScreen();
    EXPECT_EQ("QuietrixTKTonePickerViewController", picker().getClass().name());
    EXPECT_EQ(10, picker().alertType());
    EXPECT_FALSE(picker().showsVibrations());
    EXPECT_TRUE(picker().showsStoreButtonInNavigationBar());
    EXPECT_TRUE(picker().noneAtTop());
    EXPECT_FALSE(picker().showsToneStore());
    EXPECT_EQ("texttone:Chord", picker().selectedToneIdentifier());
    EXPECT_EQ("texttone:Chord", picker().defaultToneIdentifier());
    EXPECT_EQ(screen_->view(), picker().view()->superview());
    const auto area = screen_->view()->bounds();
    EXPECT_EQ((platform::Rect{0, 64, area.width, area.height - 64}), picker().view()->frame());
    EXPECT_EQ(screen_->createdTonePickerViewController(), screen_->tonePickerViewController());
}

TEST_F(TonePicker, onAPhoneThatKnowsNoToneStore_isConfiguredWithoutIt) {
    platform::TKTonePickerViewController::setHasToneStore(false);
    openOnSystemScreen();
    EXPECT_TRUE(picker().showsToneStore());
    EXPECT_TRUE(picker().noneAtTop());
    EXPECT_EQ(screen_->view(), picker().view()->superview());
    EXPECT_TRUE(phone_.log->lines().empty()) << "what the picker does not have must not be called";
}

TEST_F(TonePicker, profileWithoutATone_opensWithTheCalendarAlertSelected) {
    profile_->setAlertToneIdentifier(std::nullopt);
    openOnSystemScreen();
    EXPECT_EQ("texttone:Calendar Alert", picker().selectedToneIdentifier());
    EXPECT_EQ("texttone:Calendar Alert", picker().defaultToneIdentifier());
}

TEST_F(TonePicker, existingProfile_isSavedAndThenAnnouncedAsApplied) {
    openOnSystemScreen();
    ASSERT_TRUE(picker().userChoseTone("texttone:Chord"));
    EXPECT_EQ(
        "update; com.velmora.ProfileAppliedStateChangedNotification; "
        "com.velmora.ProfileChangedNotification",
        happened());
    EXPECT_EQ("texttone:Chord", required(stored())->alertToneIdentifier());
    ASSERT_EQ(1U, required(row_->userInfo().dictionary())->size());
    EXPECT_NE(profile_, shown());
    EXPECT_EQ("texttone:Chord", required(shown())->alertToneIdentifier());
}

TEST_F(TonePicker, newProfile_isOnlyAnnouncedToTheEditor) {
    profile_->setNewProfile(true);
    openOnSystemScreen();
    ASSERT_TRUE(picker().userChoseTone("texttone:Chord"));
    EXPECT_EQ("com.velmora.ProfileDataUpdateNotification", happened());
    EXPECT_EQ("texttone:Chord", profile_->alertToneIdentifier());
}

TEST_F(TonePicker, appliedStateChanged_leavesANewProfileItsTone) {
    profile_->setNewProfile(true);
    openOnSystemScreen();
    ASSERT_TRUE(picker().userChoseTone("texttone:Chord"));
    profile_->setVibrateAlert(!profile_->vibrateAlert());
    const bool vibrates = profile_->vibrateAlert();
    post(ProfileAppliedStateChangedNotification);
    ASSERT_EQ(platform::Value(platform::Dictionary{{"profile", profile_}}), row_->userInfo());
    EXPECT_EQ("texttone:Chord", required(shown())->alertToneIdentifier());
    ASSERT_TRUE(picker().userChoseTone("texttone:Calendar Alert"));
    EXPECT_EQ("texttone:Calendar Alert", profile_->alertToneIdentifier());
    EXPECT_EQ(vibrates, profile_->vibrateAlert());
    EXPECT_EQ(0U, storeCalls());
    EXPECT_EQ(nullptr, alert());
}

TEST_F(TonePicker, none_storesTheDefaultTone) {
    profile_->setAlertToneIdentifier("texttone:Chord");
    openOnSystemScreen();
    ASSERT_TRUE(picker().userChoseTone("texttone:Calendar Alert"));
    phone_.drain();
    ASSERT_TRUE(picker().userChoseTone(std::nullopt));
    phone_.drain();
    EXPECT_EQ("texttone:Chord", required(stored())->alertToneIdentifier());
    EXPECT_EQ(std::nullopt, picker().selectedToneIdentifier());
}

TEST_F(TonePicker, toneThatIsNotThere_cannotBeChosen) {
    openOnSystemScreen();
    EXPECT_FALSE(picker().userChoseTone("texttone:Nowhere"));
    EXPECT_EQ("", happened());
}

TEST_F(TonePicker, failedSave_showsTheErrorAndKeepsTheToneInMemory) {
    openOnSystemScreen();
    failWrites();
    ASSERT_TRUE(picker().userChoseTone("texttone:Chord"));
    EXPECT_EQ("update", happened());
    ASSERT_NE(nullptr, alert());
    EXPECT_EQ("texttone:Chord", profile_->alertToneIdentifier());
}

TEST_F(TonePicker, withoutASuperclass_isAnEmptyScreenThatCanBeLeft) {
    open();
    EXPECT_NE(nullptr, screen_->tonePickerViewController());
    EXPECT_EQ(nullptr, picker().view()->superview());
    EXPECT_TRUE(closesForGood());
}

TEST_F(TonePicker, chrome_isTheProductsWithTheTitleAsText) {
    currentYear() = 0;
    openOnSystemScreen();
    const auto& item = screen_->navigationItem();
    ASSERT_NE(nullptr, item->rightBarButtonItem());
    EXPECT_EQ("twitter", required(item->rightBarButtonItem()->image())->name());
    EXPECT_EQ("__tessaneTwitterAction:", item->rightBarButtonItem()->action().selector());
    const auto label = std::dynamic_pointer_cast<platform::UILabel>(item->titleView());
    ASSERT_NE(nullptr, label);
    EXPECT_EQ("Condition", label->text());
    EXPECT_EQ(20, label->fontSize());
    EXPECT_EQ(platform::NSTextAlignmentCenter, label->textAlignment());
    EXPECT_TRUE(required(label->textColor())->isEqual(*UIColor::whiteColor()));
    EXPECT_TRUE(required(label->shadowColor())->isEqual(*UIColor::colorWithWhite_alpha(0, 0.5)));
    EXPECT_TRUE(required(label->backgroundColor())->isEqual(*UIColor::clearColor()));
    EXPECT_EQ(nullptr, item->backBarButtonItem());
    EXPECT_EQ(2026, currentYear());

    const auto& bar = navigation_->navigationBar();
    EXPECT_EQ("nav", required(required(bar->barTintColor())->patternImage())->name());
    navigation_->popViewControllerAnimated(false);
    EXPECT_EQ(nullptr, bar->barTintColor());
}

TEST_F(TonePicker, beforeEleven_givesTheBackButtonTheLogo) {
    phone_.facts->version = "10.3";
    openOnSystemScreen();
    const auto& back = screen_->navigationItem()->backBarButtonItem();
    ASSERT_NE(nullptr, back);
    EXPECT_EQ("Quietrix", required(back->image())->name());
    EXPECT_EQ("backButtonAction:", back->action().selector());
}

TEST_F(TonePicker, shareButton_opensTheSheet) {
    openOnSystemScreen();
    screen_->__tessaneTwitterAction(nullptr);
    ASSERT_NE(nullptr, alert());
    EXPECT_EQ(3U, alert()->actions().size());
}

TEST_F(TonePicker, closed_isNotKeptAlive) {
    openOnSystemScreen();
    ASSERT_TRUE(picker().userChoseTone("texttone:Chord"));
    EXPECT_TRUE(closesForGood());
    post(ProfileAppliedStateChangedNotification);
}

}  // namespace
}  // namespace quietrix
