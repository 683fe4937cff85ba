// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "conditions/PickerScreen.h"
#include "shell/chrome/ProductScreen.h"

namespace quietrix {

/// Chooses the calendars of a profile, and whether their all-day events count. The opening row's user info
/// holds the profile under "profile" and the calendars, an array of EKCalendar objects for each group's
/// title, under "calendars". Every change of an existing profile is saved at once. Main thread.
class QuietrixCalendarsController : public PickerScreen<ProductScreen> {
    PLATFORM_CLASS(QuietrixCalendarsController, velmora::VMMiscSettingsViewController)

  public:
    using Table = std::shared_ptr<platform::UITableView>;
    using Row = std::shared_ptr<platform::PSSpecifier>;

    platform::SpecifierArray specifiers() override;
    /// The groups in the order of their titles, case ignored, each with its calendars in their own order.
    platform::SpecifierList calendarSpecifiers();

    platform::Value readPreferenceValue(const Row& specifier);
    void setPreferenceValue_specifier(const platform::Value& value, const Row& specifier);
    bool isCalendarSelected(const std::string& identifier) const;

    std::shared_ptr<platform::PSTableCell> tableView_cellForRowAtIndexPath(const Table& table,
                                                                           platform::IndexPath path) override;
    /// Ticks the row or takes its tick away; the switch's row too.
    void tableView_didSelectRowAtIndexPath(const Table& table, platform::IndexPath path) override;
    /// Every row.
    bool rowCanBeSelected(platform::IndexPath path) override;

  protected:
    Saving saving() override;
    /// With the calendars as they are now.
    platform::Dictionary userInfoWith(const std::shared_ptr<QXProfile>& profile) const override;

  private:
    Row allDayRow();
};

}  // namespace quietrix
