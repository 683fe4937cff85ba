// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/NotificationCenter.h"
#include "platform/preferences/PSEditableListController.h"

namespace ringer {

/// The bells: each a row whose text is its name, to be changed in place or deleted, and a row that adds one.
/// A bell is stored as a dictionary of "identifier" and "name"; the row carries the identifier as its own.
class RingerBellsController : public platform::PSEditableListController {
    PLATFORM_CLASS(RingerBellsController, platform::PSEditableListController)

  public:
    platform::SpecifierArray specifiers() override;
    void viewDidLoad() override;
    /// Bells can be deleted, the row that adds one cannot.
    std::int64_t tableView_editingStyleForRowAtIndexPath(const std::shared_ptr<platform::UITableView>& table,
                                                         platform::IndexPath path) override;
    void tableView_commitEditingStyle_forRowAtIndexPath(const std::shared_ptr<platform::UITableView>& table,
                                                        std::int64_t style,
                                                        platform::IndexPath path) override;

    void setBellName_specifier(const platform::Value& value,
                               const std::shared_ptr<platform::PSSpecifier>& specifier);
    platform::Value bellName(const std::shared_ptr<platform::PSSpecifier>& specifier);
    void addBellAction(const std::shared_ptr<platform::PSSpecifier>& specifier);
    void settingsChanged(const platform::Notification& notification);
};

}  // namespace ringer
