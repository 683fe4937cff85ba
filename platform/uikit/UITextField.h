// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>

#include "platform/uikit/UIControl.h"

namespace platform {

class UITextField;

inline constexpr std::int64_t UIReturnKeyDefault = 0;
inline constexpr std::int64_t UIReturnKeyDone = 9;

/// What a text field tells its delegate.
class UITextFieldDelegate {
  public:
    virtual ~UITextFieldDelegate() = default;

    virtual void textFieldDidBeginEditing(UITextField& field) = 0;
    /// Return was pressed; the answer says whether the field may insert a line break's default behaviour.
    virtual bool textFieldShouldReturn(UITextField& field) = 0;
    virtual void textFieldDidEndEditing(UITextField& field) = 0;
};

/// A line of text the user types. It is edited while it is the first responder.
class UITextField : public UIControl {
    PLATFORM_CLASS(UITextField, UIControl)

  public:
    using UIControl::UIControl;

    const std::string& text() const { return text_; }
    void setText(std::string text) { text_ = std::move(text); }
    const std::string& placeholder() const { return placeholder_; }
    void setPlaceholder(std::string placeholder) { placeholder_ = std::move(placeholder); }
    std::int64_t returnKeyType() const { return returnKeyType_; }
    void setReturnKeyType(std::int64_t type) { returnKeyType_ = type; }
    /// The delegate must outlive the field or take itself away.
    void setDelegate(UITextFieldDelegate* delegate) { delegate_ = delegate; }
    bool isFirstResponder() const { return firstResponder_; }
    /// Begins and ends editing and tells the delegate; doing what is done already tells nobody.
    void becomeFirstResponder();
    void resignFirstResponder();
    /// What the user's return key does: asks the delegate; true without one, false while nobody edits the
    /// field.
    bool pressReturn();

  private:
    std::string text_;
    std::string placeholder_;
    std::int64_t returnKeyType_ = UIReturnKeyDefault;
    bool firstResponder_ = false;
    UITextFieldDelegate* delegate_ = nullptr;
};

}  // namespace platform
