// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "platform/tonekit/ToneScreen.h"
#include "tests/doubles/Phone.h"
#include "tests/doubles/Required.h"

namespace platform {
namespace {

using doubles::errorOf;

/// Remembers what a picker tells it.
class ToneDelegate : public Object, public TKTonePickerViewControllerDelegate {
    PLATFORM_CLASS(ToneDelegate, Object)

  public:
    void tonePickerViewController_selectedToneWithIdentifier(
        const std::shared_ptr<TKTonePickerViewController>& /*picker*/,
        const std::optional<std::string>& identifier) override {
        chosen.push_back(identifier);
    }
    std::vector<std::optional<std::string>> chosen;
};
PLATFORM_REGISTER_CLASS(ToneDelegate)

TEST(ToneScreen, madeToExist_isFoundAndMadeByItsNameOnce) {
    const doubles::Phone phone;
    ASSERT_EQ(nullptr, ClassRegistry::shared().find("ToneScreenOfATest"));
    makeToneScreenClassExist("ToneScreenOfATest");
    const Class* cls = ClassRegistry::shared().find("ToneScreenOfATest");
    ASSERT_NE(nullptr, cls);
    EXPECT_TRUE(cls->isSubclassOf(PSViewController::staticClass()));
    makeToneScreenClassExist("ToneScreenOfATest");
    EXPECT_EQ(cls, ClassRegistry::shared().find("ToneScreenOfATest"));
    EXPECT_TRUE(ClassRegistry::shared().takeDuplicates().empty());
    const auto screen = ClassRegistry::shared().make<ToneScreen>("ToneScreenOfATest");
    ASSERT_TRUE(screen.has_value());
    EXPECT_EQ(cls, &(*screen)->getClass());
}

TEST(ToneScreen, forgottenClasses_canBeMadeToExistAgain) {
    const doubles::Phone phone;
    makeToneScreenClassExist("ForgottenToneScreen");
    const Class* cls = ClassRegistry::shared().find("ForgottenToneScreen");
    forgetToneScreenClasses();
    EXPECT_EQ(ClassRegistry::shared().find("ForgottenToneScreen"), nullptr);
    EXPECT_NE(ClassRegistry::shared().find("PSViewController"), nullptr);
    makeToneScreenClassExist("ForgottenToneScreen");
    EXPECT_EQ(ClassRegistry::shared().find("ForgottenToneScreen"), cls);
    forgetToneScreenClasses();
}

TEST(ToneScreen, newPicker_takesThePlaceOfTheOldOne) {
    const doubles::Phone phone;
    const auto screen = std::make_shared<ToneScreen>(PSViewController::staticClass());
    const auto first = std::make_shared<TKTonePickerViewController>(1);
    const auto second = std::make_shared<TKTonePickerViewController>(2);
    EXPECT_EQ(nullptr, screen->tonePickerViewController());
    screen->setTonePickerViewController(first);
    EXPECT_EQ(screen->view(), first->view()->superview());
    EXPECT_EQ(screen->view()->bounds(), first->view()->frame());
    screen->setTonePickerViewController(second);
    EXPECT_EQ(nullptr, first->view()->superview());
    EXPECT_EQ(second, screen->tonePickerViewController());
    screen->setTonePickerViewController(nullptr);
    EXPECT_TRUE(screen->view()->subviews().empty());
}

TEST(TonePicker, entryChosen_isSelectedAndToldEachTime) {
    const doubles::Phone phone;
    const auto picker = std::make_shared<TKTonePickerViewController>(10);
    const auto delegate = std::make_shared<ToneDelegate>();
    picker->setDelegate(delegate);
    picker->setNoneAtTop(true);
    EXPECT_TRUE(picker->userChoseTone("texttone:Chord"));
    EXPECT_TRUE(picker->userChoseTone("texttone:Chord"));
    EXPECT_EQ("texttone:Chord", picker->selectedToneIdentifier());
    EXPECT_TRUE(picker->userChoseTone(std::nullopt));
    EXPECT_EQ(std::nullopt, picker->selectedToneIdentifier());
    EXPECT_EQ((std::vector<std::optional<std::string>>{"texttone:Chord", "texttone:Chord", std::nullopt}),
              delegate->chosen);
}

TEST(TonePicker, entryThatIsNotThere_isRefusedByName) {
    const doubles::Phone phone;
    const auto picker = std::make_shared<TKTonePickerViewController>(10);
    const auto delegate = std::make_shared<ToneDelegate>();
    picker->setDelegate(delegate);
    picker->setSelectedToneIdentifier("texttone:Chord");
    const auto unknown = picker->userChoseTone("texttone:Nowhere");
    ASSERT_FALSE(unknown);
    EXPECT_NE(std::string::npos, errorOf(unknown).find("texttone:Nowhere"));
    EXPECT_FALSE(picker->userChoseTone(std::nullopt)) << "no \"None\" in this list";
    EXPECT_EQ("texttone:Chord", picker->selectedToneIdentifier());
    EXPECT_TRUE(delegate->chosen.empty());
}

TEST(TonePicker, delegateGone_isToldNothing) {
    const doubles::Phone phone;
    const auto picker = std::make_shared<TKTonePickerViewController>(10);
    picker->setDelegate(std::make_shared<ToneDelegate>());
    EXPECT_TRUE(picker->userChoseTone("texttone:Chord"));
    EXPECT_EQ("texttone:Chord", picker->selectedToneIdentifier());
}

}  // namespace
}  // namespace platform
