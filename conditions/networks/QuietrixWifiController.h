// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "conditions/PickerScreen.h"
#include "shell/chrome/ProductScreen.h"

namespace quietrix {

/// Chooses the Wi-Fi networks that a profile is tied to, a switch for each one that the phone remembers. The
/// opening row's user info holds the profile under "profile". Main thread.
class QuietrixWifiController : public PickerScreen<ProductScreen> {
    PLATFORM_CLASS(QuietrixWifiController, velmora::VMMiscSettingsViewController)

  public:
    using Table = std::shared_ptr<platform::UITableView>;
    using Row = std::shared_ptr<platform::PSSpecifier>;

    platform::SpecifierArray specifiers() override;
    /// The networks' rows, built once while there are any.
    const platform::SpecifierArray& wifiSpecifiers();
    bool isWiFiSelected(const std::string& ssid) const;
    /// Ties the profile to the row's network, or unties it if it is tied: the value plays no part. Other rows
    /// of the network's name get new cells.
    void setPreferenceValue_specifier(const platform::Value& value, const Row& specifier);
    /// Sets the switch, which has no getter to be set by.
    std::shared_ptr<platform::PSTableCell> tableView_cellForRowAtIndexPath(const Table& table,
                                                                           platform::IndexPath path) override;

  protected:
    /// After a success the opening row holds the store's profile; the saved one if the store has lost it
    /// since.
    Saving saving() override;

  private:
    platform::SpecifierArray wifiSpecifiers_;
};

}  // namespace quietrix
