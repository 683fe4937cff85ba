// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/NotificationCenter.h"
#include "platform/preferences/PSListController.h"

namespace ringer {

/// The first screen: a row for each setting, under the setting's key as its identifier, and the ways to the
/// others.
class RingerController : public platform::PSListController {
    PLATFORM_CLASS(RingerController, platform::PSListController)

  public:
    platform::SpecifierArray specifiers() override;
    void viewDidLoad() override;
    /// Puts the number of bells at the right of their row.
    std::shared_ptr<platform::PSTableCell> tableView_cellForRowAtIndexPath(
        const std::shared_ptr<platform::UITableView>& table, platform::IndexPath path) override;

    void setPreferenceValue_specifier(const platform::Value& value,
                                      const std::shared_ptr<platform::PSSpecifier>& specifier);
    platform::Value readPreferenceValue(const std::shared_ptr<platform::PSSpecifier>& specifier);
    void resetAction(const std::shared_ptr<platform::PSSpecifier>& specifier);
    void settingsChanged(const platform::Notification& notification);

  private:
    std::shared_ptr<platform::PSSpecifier> resetRow();
};

}  // namespace ringer
