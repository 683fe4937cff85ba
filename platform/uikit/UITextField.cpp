// SPDX-License-Identifier: MIT
#include "platform/uikit/UITextField.h"

namespace platform {

PLATFORM_REGISTER_CLASS(UITextField)

// The delegate may drop the cell that owns this field while it is told, so each method keeps the field alive.

void UITextField::becomeFirstResponder() {
    if (firstResponder_) return;
    const auto self = shared(this);
    firstResponder_ = true;
    if (delegate_ != nullptr) delegate_->textFieldDidBeginEditing(*this);
}

void UITextField::resignFirstResponder() {
    if (!firstResponder_) return;
    const auto self = shared(this);
    firstResponder_ = false;
    if (delegate_ != nullptr) delegate_->textFieldDidEndEditing(*this);
}

bool UITextField::pressReturn() {
    if (!firstResponder_) return false;
    const auto self = shared(this);
    return delegate_ == nullptr || delegate_->textFieldShouldReturn(*this);
}

}  // namespace platform
