// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "shell/chrome/ProductScreen.h"

namespace quietrix {

/// Chooses by the user's answer which calendar events count: one of four, in the order of the values that the
/// profile stores. The opening row's user info holds the profile under "profile". It shows the record that it
/// was handed, whatever becomes of the store's. Main thread.
class QuietrixEventStatusController : public ProductScreen {
    PLATFORM_CLASS(QuietrixEventStatusController, velmora::VMMiscSettingsViewController)

  public:
    using Table = std::shared_ptr<platform::UITableView>;

    /// A row for each status, known by its title in the phone's language.
    platform::SpecifierArray specifiers() override;
    std::shared_ptr<platform::PSTableCell> tableView_cellForRowAtIndexPath(const Table& table,
                                                                           platform::IndexPath path) override;
    /// Moves the checkmark and saves. The old row is found by the title of the profile's status: one that
    /// matches no row keeps its checkmark.
    void tableView_didSelectRowAtIndexPath(const Table& table, platform::IndexPath path) override;
    bool rowCanBeSelected(platform::IndexPath path) override;
};

}  // namespace quietrix
