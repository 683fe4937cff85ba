// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>

#include "velmora/VMMiscSettingsViewController.h"

namespace quietrix {

/// What the profile editor and the pickers have in common: how they fill the hooks of the maker's list
/// screen. No class of its own for the phone, where each of those screens derives from that base directly.
class ProductScreen : public velmora::VMMiscSettingsViewController {
  public:
    bool hasCustomNavigationBarColor() const override { return true; }
    std::shared_ptr<platform::UIColor> customNavigationBarColor() const override;
    /// From the host application's texts, unlike every other text of these screens.
    std::string twitterMessage() const override;
    std::shared_ptr<platform::UIImage> twitterImage() const override;
    std::string copryRightSpecifierText(const std::shared_ptr<platform::PSSpecifier>& row) override;

    /// The copyright row, which the base keeps after the screen's own.
    std::shared_ptr<platform::PSSpecifier> copyRightSpecifier();
};

}  // namespace quietrix
