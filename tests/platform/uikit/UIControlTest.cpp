// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "platform/uikit/UIBarButtonItem.h"
#include "platform/uikit/UIControl.h"
#include "platform/uikit/UINavigationItem.h"
#include "platform/uikit/UISlider.h"
#include "platform/uikit/UISwitch.h"
#include "platform/uikit/UITextField.h"

namespace platform {
namespace {

class Receiver : public Object {
  public:
    void moved(const std::shared_ptr<Object>& sender) { senders.push_back(sender); }
    std::vector<std::shared_ptr<Object>> senders;
};

UIControl::Action movedAction() {
    return method("moved:", &Receiver::moved);
}

TEST(UIControl, actions_areSentForTheirEventsOnlyWithTheControl) {
    const auto receiver = std::make_shared<Receiver>();
    const auto control = std::make_shared<UISwitch>();
    control->addTarget_action_forControlEvents(receiver, movedAction(), UIControlEventValueChanged);
    control->addTarget_action_forControlEvents(nullptr, movedAction(), UIControlEventValueChanged);
    control->sendActionsForControlEvents(1);
    EXPECT_TRUE(receiver->senders.empty());
    control->sendActionsForControlEvents(UIControlEventValueChanged | 1U);
    EXPECT_EQ(std::vector<std::shared_ptr<Object>>{control}, receiver->senders);
}

TEST(UIControl, target_isHeldWeakly) {
    auto receiver = std::make_shared<Receiver>();
    const std::weak_ptr<Receiver> gone = receiver;
    const auto control = std::make_shared<UISwitch>();
    control->addTarget_action_forControlEvents(receiver, movedAction(), UIControlEventValueChanged);
    receiver.reset();
    EXPECT_TRUE(gone.expired());
    control->sendActionsForControlEvents(UIControlEventValueChanged);
}

TEST(UISlider, value_isBroughtIntoTheRange) {
    const auto slider = std::make_shared<UISlider>();
    slider->setValue(7);
    EXPECT_EQ(1.0, slider->value());
    slider->setRange(2, 4);
    EXPECT_EQ(2.0, slider->value());
    slider->setValue(-std::numeric_limits<double>::infinity());
    EXPECT_EQ(2.0, slider->value());
    slider->setRange(5, 3);
    EXPECT_EQ(5.0, slider->maximumValue());
    EXPECT_EQ(5.0, slider->value());
}

TEST(UISlider, notANumber_isIgnored) {
    const auto slider = std::make_shared<UISlider>();
    slider->setValue(0.5);
    slider->setValue(std::nan(""));
    slider->setRange(std::nan(""), 1);
    slider->setRange(0, std::nan(""));
    EXPECT_EQ(0.5, slider->value());
    EXPECT_EQ(0.0, slider->minimumValue());
    EXPECT_EQ(1.0, slider->maximumValue());
}

class FieldDelegate : public UITextFieldDelegate {
  public:
    void textFieldDidBeginEditing(UITextField& /*field*/) override { calls.emplace_back("begin"); }
    bool textFieldShouldReturn(UITextField& field) override {
        calls.emplace_back("return");
        field.resignFirstResponder();
        return false;
    }
    void textFieldDidEndEditing(UITextField& /*field*/) override { calls.emplace_back("end"); }
    std::vector<std::string> calls;
};

TEST(UITextField, editing_tellsTheDelegateOnceForEachChange) {
    FieldDelegate delegate;
    const auto field = std::make_shared<UITextField>();
    field->setDelegate(&delegate);
    EXPECT_FALSE(field->pressReturn()) << "nobody edits the field";
    field->resignFirstResponder();
    field->becomeFirstResponder();
    field->becomeFirstResponder();
    EXPECT_FALSE(field->pressReturn());
    field->resignFirstResponder();
    EXPECT_EQ((std::vector<std::string>{"begin", "return", "end"}), delegate.calls);
    EXPECT_FALSE(field->isFirstResponder());
}

TEST(UITextField, withoutADelegate_returnIsAllowed) {
    const auto field = std::make_shared<UITextField>();
    field->becomeFirstResponder();
    EXPECT_TRUE(field->pressReturn());
    EXPECT_TRUE(field->isFirstResponder());
}

TEST(UIBarButtonItem, press_sendsTheButtonToItsTarget) {
    auto receiver = std::make_shared<Receiver>();
    const auto button = std::make_shared<UIBarButtonItem>(UIBarButtonSystemItemAdd, receiver, movedAction());
    EXPECT_EQ(UIBarButtonSystemItemAdd, button->systemItem());
    EXPECT_EQ("moved:", button->action().selector());
    button->press();
    EXPECT_EQ(std::vector<std::shared_ptr<Object>>{button}, receiver->senders);
    receiver.reset();
    EXPECT_EQ(nullptr, button->target());
    button->press();
}

TEST(UIBarButtonItem, titleAndImageItems_areNoSystemItems) {
    const auto image = std::make_shared<UIImage>();
    const UIBarButtonItem titled("Edit", UIBarButtonItemStyleDone, nullptr, {});
    const UIBarButtonItem pictured(image, UIBarButtonItemStylePlain, nullptr, {});
    EXPECT_EQ("Edit", titled.title());
    EXPECT_EQ(UIBarButtonItemStyleDone, titled.style());
    EXPECT_FALSE(titled.systemItem().has_value());
    EXPECT_EQ(image, pictured.image());
    EXPECT_FALSE(pictured.title().has_value());
}

TEST(UINavigationItem, oneItem_replacesItsSideAndNullClearsIt) {
    const auto item = std::make_shared<UINavigationItem>();
    const auto one = std::make_shared<UIBarButtonItem>();
    const auto other = std::make_shared<UIBarButtonItem>();
    EXPECT_EQ(nullptr, item->rightBarButtonItem());
    item->setRightBarButtonItems_animated({one, nullptr, other}, true);
    EXPECT_EQ((UINavigationItem::Items{one, other}), item->rightBarButtonItems());
    EXPECT_EQ(one, item->rightBarButtonItem());
    item->setRightBarButtonItem_animated(other, true);
    EXPECT_EQ(UINavigationItem::Items{other}, item->rightBarButtonItems());
    item->setRightBarButtonItem_animated(nullptr, true);
    EXPECT_TRUE(item->rightBarButtonItems().empty());
    item->setLeftBarButtonItem_animated(one, false);
    EXPECT_EQ(UINavigationItem::Items{one}, item->leftBarButtonItems());
}

}  // namespace
}  // namespace platform
