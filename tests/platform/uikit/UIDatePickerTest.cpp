// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "platform/uikit/UIDatePicker.h"
#include "tests/doubles/Phone.h"

namespace platform {
namespace {

/// Counts what a picker sends.
class PickerTarget : public Object {
    PLATFORM_CLASS(PickerTarget, Object)

  public:
    void moved(const std::shared_ptr<Object>& sender) { senders.push_back(sender); }
    std::vector<std::shared_ptr<Object>> senders;
};
PLATFORM_REGISTER_CLASS(PickerTarget)

class DatePicker : public testing::Test {
  protected:
    DatePicker() {
        picker_->addTarget_action_forControlEvents(target_, method("moved:", &PickerTarget::moved),
                                                   UIControlEventValueChanged);
    }

    doubles::Phone phone_;
    std::shared_ptr<PickerTarget> target_ = std::make_shared<PickerTarget>();
    std::shared_ptr<UIDatePicker> picker_ = std::make_shared<UIDatePicker>();
};

TEST_F(DatePicker, new_showsThePresentAndDateAndTime) {
    EXPECT_EQ(dateNow(), picker_->date());
    EXPECT_EQ(UIDatePickerModeDateAndTime, picker_->datePickerMode());
}

TEST_F(DatePicker, dateSet_isTakenAndNotSent) {
    picker_->setDate_animated(Date{60}, true);
    EXPECT_EQ(Date{60}, picker_->date());
    picker_->setDate_animated(std::nullopt, false);
    EXPECT_EQ(std::nullopt, picker_->date());
    EXPECT_TRUE(target_->senders.empty());
}

TEST_F(DatePicker, dateChosen_isTakenAndSentOnce) {
    EXPECT_TRUE(picker_->userChoseDate(Date{120}));
    EXPECT_EQ(Date{120}, picker_->date());
    ASSERT_EQ(1U, target_->senders.size());
    EXPECT_EQ(picker_, target_->senders.front());
}

TEST_F(DatePicker, disabled_cannotBeMoved) {
    picker_->setDate_animated(Date{60}, false);
    picker_->setEnabled(false);
    EXPECT_FALSE(picker_->userChoseDate(Date{120}));
    EXPECT_EQ(Date{60}, picker_->date());
    EXPECT_TRUE(target_->senders.empty());
}

}  // namespace
}  // namespace platform
