// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "platform/foundation/NotificationCenter.h"
#include "profile/model/QXProfile.h"
#include "shell/base/Rows.h"
#include "shell/chrome/ProductScreen.h"

namespace quietrix {

/// The screen that edits one profile, the user info of the row that opened it. Every change of an existing
/// profile is saved at once; a new one stays in memory until Save adds it, and Cancel drops it. Main thread.
///
/// The record may become nil (it was deleted, or is not in the store yet): the screen then shows its first
/// rows only, without values and with "Enable" on, the default of that switch. A change there shows the
/// store's error and is gone at the next look.
class QuietrixProflePreferencesController : public ProductScreen {
    PLATFORM_CLASS(QuietrixProflePreferencesController, velmora::VMMiscSettingsViewController)

  public:
    using Table = std::shared_ptr<platform::UITableView>;
    using Row = std::shared_ptr<platform::PSSpecifier>;

    const std::shared_ptr<QXProfile>& profile() const { return profile_; }
    void setProfile(std::shared_ptr<QXProfile> profile) { profile_ = std::move(profile); }
    /// The profile's.
    std::optional<std::string> title() const override;

    // The rows. Each builder makes new ones at each call, but for `profilesSpecifiers`.

    /// An empty group and `profilesSpecifiers`; takes the profile from the opening row when it builds.
    platform::SpecifierArray specifiers() override;
    /// Title, "Enable", and while the profile is enabled all the rest. Cached until `reloadSpecifiers`.
    platform::SpecifierArray profilesSpecifiers();
    platform::SpecifierList profileEnabledSpecifiers();
    platform::SpecifierList activeTimeSpecifiers();
    platform::SpecifierList ringerVolumeSpecifiers();
    platform::SpecifierList alertSpecifiers();

    std::shared_ptr<platform::PSTableCell> tableView_cellForRowAtIndexPath(const Table& table,
                                                                           platform::IndexPath path) override;
    double tableView_estimatedHeightForRowAtIndexPath(const Table& table, platform::IndexPath path) override;

    // What the rows do.

    platform::Value readPreferenceValue(const Row& specifier);
    /// Stores the value in the record, saves, and only then inserts or removes rows.
    void setPreferenceValue_specifier(const platform::Value& value, const Row& specifier);
    void setAllDayModeEnabled_specifier(const platform::Value& value, const Row& specifier);
    void enableOrDisableProfileAlertToneSpecifiers_animate(const platform::SpecifierArray& list,
                                                           bool animate);
    void enableOrDisableProfileSilentedSpecifiers_animate(const platform::SpecifierArray& list, bool animate);
    /// Saves an existing profile; nothing for a new one. The sender does not matter.
    void saveProfile(const std::shared_ptr<platform::Object>& sender);

    // Life cycle.

    void viewDidLoad() override;
    void reloadSpecifiers() override;
    void addProfileAction(const std::shared_ptr<platform::Object>& sender);
    void dismissVieControllerAction(const std::shared_ptr<platform::Object>& sender);
    /// Another screen changed the record: saves it, and shows the store's.
    void profileUpdated(const platform::Notification& notification);
    /// Shows the store's record, even when there is none.
    void profileAppliedStateChanged(const platform::Notification& notification);

  private:
    // Parts of the table, from the top of the screen to its end.
    Row titleRow();
    platform::SpecifierList scheduleSpecifiers();
    platform::SpecifierList doNotDisturbSpecifiers();
    platform::SpecifierList statusBarSpecifiers();
    platform::SpecifierList networksSpecifiers();
    platform::SpecifierList calendarsSpecifiers();

    /// A row that shows and sets the record's value under its identifier.
    Row valueRow(RowParts parts);
    Row switchRow(std::string name, const char* identifier, bool defaultValue);
    Row volumeRow(std::string name, const char* identifier);

    std::shared_ptr<QXProfile> storedProfile() const;
    void showProfile(std::shared_ptr<QXProfile> profile);

    std::shared_ptr<QXProfile> profile_;
    platform::SpecifierArray profilesSpecifiers_;
};

}  // namespace quietrix
