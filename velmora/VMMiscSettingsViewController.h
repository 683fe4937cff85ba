// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/preferences/PSListController.h"
#include "velmora/VMNavigationBarColors.h"

namespace velmora {

/// The identifier of the copyright row.
inline constexpr std::string_view copyRightHeaderIdentifier = "CopyRightHeader";

/// The base of a product's list screens. While such a screen is on top the navigation bar wears the product's
/// colour; the bar's share button offers the product's recommendation; and after the rows that `specifiers`
/// gives stands one more, the copyright row. A subclass says what these show by the hooks; it neither builds
/// nor removes the copyright row. Main thread.
class VMMiscSettingsViewController : public platform::PSListController {
    PLATFORM_CLASS(VMMiscSettingsViewController, platform::PSListController)

  public:
    /// Whether the bar takes `customNavigationBarColor` while the screen is on top. The base's answer is no:
    /// the bar stays as it is.
    virtual bool hasCustomNavigationBarColor() const { return false; }
    /// Null, the base's answer, is the platform's own look.
    virtual std::shared_ptr<platform::UIColor> customNavigationBarColor() const { return nullptr; }
    /// The text that sharing begins with. Without one there is no share button.
    virtual std::string twitterMessage() const { return {}; }
    /// The share button's image.
    virtual std::shared_ptr<platform::UIImage> twitterImage() const { return nullptr; }
    /// The notice under the copyright row, asked for with each build of the rows; empty for none.
    virtual std::string copryRightSpecifierText(const std::shared_ptr<platform::PSSpecifier>& /*row*/) {
        return {};
    }

    void viewDidLoad() override;
    void viewWillAppear(bool animated) override;
    void viewWillDisappear(bool animated) override;

    /// The share button's action.
    void shareTwitterMessage(const std::shared_ptr<platform::Object>& sender);

  protected:
    /// The rows of `specifiers` with the copyright row last, and nowhere else among them.
    platform::SpecifierArray rows() override;

  private:
    std::shared_ptr<platform::PSSpecifier> copyRightRow_;
    SavedBarColors savedColors_;
    bool wearsCustomColor_ = false;
};

}  // namespace velmora
