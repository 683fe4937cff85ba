// SPDX-License-Identifier: MIT
#pragma once

#include <concepts>
#include <cstdint>
#include <memory>

#include "platform/preferences/PSListController.h"
#include "shell/base/NavBarColor.h"
#include "shell/chrome/CopyRight.h"
#include "shell/chrome/ThemedChrome.h"
#include "support/sharing/Sharing.h"
#include "velmora/VMNavigationBarColors.h"

namespace quietrix {

/// A screen of one of the phone's classes that wears the product's chrome itself, with the share/follow
/// button; the screens on the maker's base are dressed by that base. No class of its own for the phone, where
/// each such screen derives from `Base` directly. Main thread.
template <std::derived_from<platform::PSViewController> Base, TitleView showTitle = fadeInTitleLogo>
class ChromedScreen : public Base {
    static constexpr bool isList = std::derived_from<Base, platform::PSListController>;

  public:
    void viewDidLoad() override {
        Base::viewDidLoad();
        chromeDidLoad(*this, twitterAction(), showTitle);
        if constexpr (isList) updateCopyRightSpecifier();
    }
    void viewWillAppear(bool animated) override {
        Base::viewWillAppear(animated);
        velmora::applyBarColors(*this, navBarPatternColor(this->getClass()), saved_);
    }
    void viewWillDisappear(bool animated) override {
        Base::viewWillDisappear(animated);
        velmora::restoreBarColors(*this, saved_);
    }

    /// Puts the version notice under the copyright row, where the screen has one; it shows with the next
    /// look.
    void updateCopyRightSpecifier()
        requires isList
    {
        updateCopyRightFooter(*this);
    }

    void shareAction(const std::shared_ptr<platform::Object>& /*sender*/) { presentShareComposer(*this); }
    void __tessaneTwitterAction(const std::shared_ptr<platform::Object>& /*sender*/) {
        showShareSheet(*this, platform::method("shareAction:", &ChromedScreen::shareAction));
    }

    /// What the bar and the status bar looked like before this screen appeared.
    const std::shared_ptr<platform::UIColor>& prevTintcolor() const { return saved_.prevTintcolor; }
    const std::shared_ptr<platform::UIColor>& prevBarTintcolor() const { return saved_.prevBarTintcolor; }
    std::int64_t prevStatubarStyle() const { return saved_.prevStatubarStyle; }

  protected:
    /// What the share/follow button sends.
    static BarAction twitterAction() {
        return platform::method("__tessaneTwitterAction:", &ChromedScreen::__tessaneTwitterAction);
    }

  private:
    velmora::SavedBarColors saved_;
};

}  // namespace quietrix
