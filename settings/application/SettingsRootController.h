// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>

#include "platform/preferences/PSListController.h"

namespace settings {

/// The application's own first screen: a row for each installed bundle. The list is read once, when it is
/// built.
class SettingsRootController : public platform::PSListController {
    PLATFORM_CLASS(SettingsRootController, platform::PSListController)

  public:
    /// Called with the bundle's phone path when its row is tapped.
    using Opener = std::function<void(const std::string& bundlePath)>;

    explicit SettingsRootController(Opener opener);

    std::optional<std::string> title() const override;
    platform::SpecifierArray specifiers() override;
    void tableView_didSelectRowAtIndexPath(const std::shared_ptr<platform::UITableView>& table,
                                           platform::IndexPath path) override;
    bool rowCanBeSelected(platform::IndexPath path) override;

  private:
    /// The path of the bundle that the row stands for; "" when there is no such row.
    std::string bundlePathAt(platform::IndexPath path);

    Opener opener_;
};

}  // namespace settings
