// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "platform/preferences/PSEditingPane.h"
#include "platform/uikit/UIDatePicker.h"
#include "platform/uikit/UITableView.h"
#include "profile/model/QXProfile.h"

namespace quietrix {

/// What the pane needs of its delegate, which is also the screen that presents its alert.
class QXDateRangePaneDelegate {
  public:
    virtual ~QXDateRangePaneDelegate() = default;

    /// The profile has a new time.
    virtual void timeChanged() = 0;
};

/// Two rows, "From" and "To", and one time picker for both; the picker's tag (0 or 1) says which row it
/// edits. The specifier's user info is the profile. A time that leaves "To" later than "From" on the same day
/// is stored in the profile at once and told to the delegate; any other is refused with an alert. Main
/// thread.
class QXDateRangePane : public platform::PSEditingPane,
                        public platform::UITableViewDataSource,
                        public platform::UITableViewDelegate {
    PLATFORM_CLASS(QXDateRangePane, platform::PSEditingPane)

  public:
    using Table = std::shared_ptr<platform::UITableView>;

    static std::shared_ptr<QXDateRangePane> initWithFrame(platform::Rect frame);
    ~QXDateRangePane() override;

    const std::shared_ptr<platform::UIDatePicker>& datePicker() const { return datePicker_; }

    /// Whose hours these are: the specifier's user info; null when that is none.
    std::shared_ptr<QXProfile> profile() const;
    /// Puts the picker on the profile's time of the row that it edits.
    void setPreferenceSpecifier(std::shared_ptr<platform::PSSpecifier> specifier) override;
    /// Each pass selects the "From" row, whichever row the picker edits.
    void layoutSubviews() override;

    std::int64_t numberOfSectionsInTableView(const Table& table) override;
    std::int64_t tableView_numberOfRowsInSection(const Table& table, std::int64_t section) override;
    std::shared_ptr<platform::UITableViewCell> tableView_cellForRowAtIndexPath(
        const Table& table, platform::IndexPath path) override;
    /// Hands the row to the picker. Saves nothing.
    void tableView_didSelectRowAtIndexPath(const Table& table, platform::IndexPath path) override;

    /// The picker's action.
    void timeChanged(const std::shared_ptr<platform::Object>& sender);

  protected:
    explicit QXDateRangePane(platform::Rect frame) : PSEditingPane(frame) {}
    void initComponents();

  private:
    Table table();
    /// The profile's time as it is stored; empty without a profile.
    std::string timeOfRow(std::int64_t row) const;
    void showTimeOfRow(std::int64_t row);
    /// Whether the day's period is one with the picked time in place of the edited one.
    bool endsAfterStart(platform::Date picked) const;
    void refuse();

    std::shared_ptr<platform::UIDatePicker> datePicker_;
};

}  // namespace quietrix
