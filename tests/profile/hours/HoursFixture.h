// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>

#include "platform/foundation/Calendar.h"
#include "platform/foundation/DateFormatter.h"
#include "profile/hours/QXDateRangeController.h"
#include "tests/doubles/ProfileScreenFixture.h"

namespace quietrix {

/// The screen of active hours, opened by a row with the profile that a test asks for.
class HoursFixture : public doubles::ProfileScreenFixture<QXDateRangeController> {
  protected:
    void open() {
        makeOpeningRow("Active Hours", profile_);
        openScreen(doubles::Place::First);
        pane_ = std::dynamic_pointer_cast<QXDateRangePane>(screen_->pane());
        doubles::required(pane_)->layoutIfNeeded();
        table_ = std::dynamic_pointer_cast<platform::UITableView>(pane_->viewWithTag(5412));
        static_cast<void>(doubles::required(table_));
    }
    void openStored(const std::string& from, const std::string& to) {
        setHours(from, to);
        storeProfile();
        open();
    }
    void openNew(const std::string& from, const std::string& to) {
        setHours(from, to);
        profile_->setNewProfile(true);
        open();
    }
    void pick(const std::string& time) {
        platform::DateFormatter formatter;
        formatter.setDateFormat("h:mm a");
        const auto date = formatter.dateFromString(time);
        ASSERT_TRUE(date.has_value()) << time;
        ASSERT_TRUE(pane_->datePicker()->userChoseDate(*date)) << time;
    }
    /// The time of day on a day in June, which is not the one that the stored times are read on.
    void pickOnAnotherDay(std::int64_t hour, std::int64_t minute) {
        platform::DateComponents parts;
        parts.year = 2031;
        parts.month = 6;
        parts.day = 15;
        parts.hour = hour;
        parts.minute = minute;
        const auto date = platform::Calendar::currentCalendar().dateFromComponents(parts);
        ASSERT_TRUE(pane_->datePicker()->userChoseDate(date));
    }
    void selectRow(std::int64_t row) { ASSERT_TRUE(table_->userTappedRowAtIndexPath({0, row})); }
    std::string pickedTime() const {
        platform::DateFormatter formatter;
        formatter.setDateFormat("h:mm a");
        const auto date = pane_->datePicker()->date();
        return date ? formatter.stringFromDate(*date) : "none";
    }
    /// The cell of "From", 0, or of "To", 1.
    std::shared_ptr<platform::UITableViewCell> hourCell(std::int64_t row) {
        return doubles::required(table_->cellForRowAtIndexPath({0, row}));
    }
    std::string rowText(std::int64_t row) { return hourCell(row)->textLabel()->text().value_or(""); }

    std::shared_ptr<QXDateRangePane> pane_;
    std::shared_ptr<platform::UITableView> table_;

  private:
    void setHours(const std::string& from, const std::string& to) {
        profile_->setStartTime(from);
        profile_->setEndTime(to);
    }
};

}  // namespace quietrix
