// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "platform/preferences/PSSpecifier.h"
#include "platform/uikit/UIView.h"

namespace platform {

/// The content of a detail screen: a view that edits one row's value. Its delegate (the screen) is held
/// weakly.
class PSEditingPane : public UIView {
    PLATFORM_CLASS(PSEditingPane, UIView)

  public:
    using UIView::UIView;

    const std::shared_ptr<PSSpecifier>& preferenceSpecifier() const { return specifier_; }
    virtual void setPreferenceSpecifier(std::shared_ptr<PSSpecifier> specifier) {
        specifier_ = std::move(specifier);
    }
    std::shared_ptr<Object> delegate() const { return delegate_.lock(); }
    void setDelegate(const std::shared_ptr<Object>& delegate) { delegate_ = delegate; }

  private:
    std::shared_ptr<PSSpecifier> specifier_;
    std::weak_ptr<Object> delegate_;
};

}  // namespace platform
