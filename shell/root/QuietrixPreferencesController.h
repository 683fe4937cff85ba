// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/foundation/NotificationCenter.h"
#include "platform/uikit/Geometry.h"
#include "profile/model/QXProfile.h"
#include "shell/chrome/QuietrixBaseEditableSettingsController.h"

namespace quietrix {

/// The plug-in's first screen: header, the product's switch, active and inactive profiles, and the way to the
/// miscellaneous screen. Owns the main settings file, which holds the switch.
class QuietrixPreferencesController : public QuietrixBaseEditableSettingsController {
    PLATFORM_CLASS(QuietrixPreferencesController, QuietrixBaseEditableSettingsController)

  public:
    using Table = std::shared_ptr<platform::UITableView>;
    using Row = std::shared_ptr<platform::PSSpecifier>;

    /// Reads the settings file. A missing one leaves the settings nil: the switch shows off and cannot be
    /// stored.
    explicit QuietrixPreferencesController(platform::Size contentSize = {});
    ~QuietrixPreferencesController() override;

    std::string settingsFilePath() const;
    void writeSettings();

    platform::SpecifierArray specifiers() override;
    platform::SpecifierList specifiersFromProfiles(const std::vector<std::shared_ptr<QXProfile>>& profiles);
    /// Built on first use; a null array set makes the next use build them anew.
    platform::SpecifierArray enabledProfilesSpecifiers();
    void setEnabledProfilesSpecifiers(platform::SpecifierArray rows) {
        enabledProfilesSpecifiers_ = std::move(rows);
    }
    platform::SpecifierArray disabledProfilesSpecifiers();
    void setDisabledProfilesSpecifiers(platform::SpecifierArray rows) {
        disabledProfilesSpecifiers_ = std::move(rows);
    }
    platform::SpecifierArray aboutSpecifiers();

    platform::Value preferenceValue(const Row& specifier);
    void setPreferenceValue_specifier(const platform::Value& value, const Row& specifier);

    void viewDidLoad() override;
    void viewWillAppear(bool animated) override;
    std::shared_ptr<platform::PSTableCell> tableView_cellForRowAtIndexPath(const Table& table,
                                                                           platform::IndexPath path) override;
    std::int64_t tableView_editingStyleForRowAtIndexPath(const Table& table,
                                                         platform::IndexPath path) override;
    /// Asks before deleting; only the sheet's "Delete" takes the row and the profile away.
    void tableView_commitEditingStyle_forRowAtIndexPath(const Table& table, std::int64_t style,
                                                        platform::IndexPath path) override;

    /// Both reload the store and rebuild the rows later, on the main queue.
    void profilesUpdated(const platform::Notification& notification);
    void profileAppliedStateChanged(const platform::Notification& notification);

    /// The Add button: what this screen has in place of the framework's edit button.
    std::shared_ptr<platform::UIBarButtonItem> _editButtonBarItem() override;
    void addProfileAction(const std::shared_ptr<platform::Object>& sender);

  private:
    static constexpr const char* profileEditorClass = "QuietrixProflePreferencesController";

    /// The switch's key in the settings file, which is its row's identifier too.
    static std::string enabledKey();

    // Parts of the table, from the top of the screen to its end.
    Row headerRow();
    Row enabledRow();
    Row activeGroup();
    Row inactiveGroup();
    /// Opens the class's screen, or none where the name is empty.
    static Row profileRow(const std::shared_ptr<QXProfile>& profile, std::string_view detail);
    /// The row of before for a record that is still the same one and called the same: each change announces
    /// itself twice, and of thousands of profiles it leaves all but one as they are.
    Row keptProfileRow(const std::shared_ptr<QXProfile>& profile);
    void forgetUnusedProfileRows();
    Row aboutGroup();

    void insertProfileSections();
    void removeProfileSections();
    void deleteConfirmed(const std::shared_ptr<QXProfile>& profile, std::int64_t style,
                         platform::IndexPath path);

    platform::SpecifierArray enabledProfilesSpecifiers_;
    platform::SpecifierArray disabledProfilesSpecifiers_;
    platform::SpecifierArray aboutSpecifiers_;
    /// By the records that they hold.
    std::unordered_map<const QXProfile*, Row> profileRows_;
};

}  // namespace quietrix
