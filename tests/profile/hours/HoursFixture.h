// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "platform/foundation/Calendar.h"
#include "platform/foundation/DateFormatter.h"
#include "profile/hours/QXDateRangeController.h"
#include "profile/model/QXProfilesManager.h"
#include "tests/shell/phone/PluginPhone.h"

namespace quietrix {

/// The screen of active hours on a phone, opened by a row with the profile that a test asks for.
class HoursFixture : public testing::Test {
  protected:
    std::shared_ptr<QXProfile> makeProfile(const std::string& from, const std::string& to) {
        const auto profile = QXProfile::defaultProfile();
        profile->setStartTime(from);
        profile->setEndTime(to);
        return profile;
    }
    void store(const std::shared_ptr<QXProfile>& profile) {
        QXProfilesManager::sharedManager()->addProfile_success_failure(profile, nullptr, nullptr);
        phone_.drain();
    }
    void open(std::shared_ptr<QXProfile> profile) {
        profile_ = std::move(profile);
        row_ = platform::PSSpecifier::preferenceSpecifierNamed_target_set_get_detail_cell_edit(
            "Active Hours", nullptr, {}, {}, "QXDateRangeController", platform::PSCellType::Link, "");
        row_->setUserInfo(profile_);
        screen_ = std::make_shared<QXDateRangeController>();
        screen_->setSpecifier(row_);
        phone_.show(screen_);
        pane_ = std::dynamic_pointer_cast<QXDateRangePane>(screen_->pane());
        ASSERT_NE(nullptr, pane_);
        pane_->layoutIfNeeded();
        table_ = std::dynamic_pointer_cast<platform::UITableView>(pane_->viewWithTag(5412));
        ASSERT_NE(nullptr, table_);
        phone_.drain();
        phone_.takeEvents();
    }
    void openStored(const std::string& from, const std::string& to) {
        const auto profile = makeProfile(from, to);
        store(profile);
        open(QXProfilesManager::sharedManager()->profileByIdentifier_shouldReload(profile->identifier(),
                                                                                  false));
    }
    void pick(const std::string& time) {
        platform::DateFormatter formatter;
        formatter.setDateFormat("h:mm a");
        const auto date = formatter.dateFromString(time);
        ASSERT_TRUE(date.has_value());
        ASSERT_TRUE(pane_->datePicker()->userChoseDate(*date));
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
    std::string rowText(std::int64_t row) {
        return table_->cellForRowAtIndexPath({0, row})->textLabel()->text().value_or("");
    }
    std::size_t storeCalls() { return phone_.takeEvents("store").size(); }
    static std::shared_ptr<platform::UIAlertController> alert() { return doubles::shownAlert(); }

    doubles::PluginPhone phone_;
    std::shared_ptr<QXProfile> profile_;
    std::shared_ptr<platform::PSSpecifier> row_;
    std::shared_ptr<QXDateRangeController> screen_;
    std::shared_ptr<QXDateRangePane> pane_;
    std::shared_ptr<platform::UITableView> table_;
};

}  // namespace quietrix
