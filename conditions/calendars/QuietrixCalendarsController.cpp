// SPDX-License-Identifier: MIT
#include "conditions/calendars/QuietrixCalendarsController.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "conditions/ConditionScreen.h"
#include "conditions/calendars/QXCalendarTableCell.h"
#include "platform/eventkit/EKCalendar.h"
#include "platform/foundation/CaseInsensitive.h"
#include "profile/cells/QXSwitchCell.h"
#include "profile/model/PresentRecord.h"
#include "profile/model/QXEventManager.h"
#include "profile/model/QXUtils.h"
#include "shell/base/Localization.h"
#include "shell/base/NotificationNames.h"
#include "velmora/VMImages.h"

namespace quietrix {

using platform::Dictionary;
using platform::EKCalendar;
using platform::IndexPath;
using platform::method;
using platform::PSCellType;
using platform::PSSpecifier;
using platform::SpecifierArray;
using platform::SpecifierList;
using platform::Value;

PLATFORM_REGISTER_CLASS(QuietrixCalendarsController)

namespace {

constexpr const char* eventStatusIdentifier = "applyProfileEventStatus";
constexpr float swatchCorner = 10.0F;

std::shared_ptr<PSSpecifier> calendarRow(const std::shared_ptr<EKCalendar>& calendar) {
    const auto row = PSSpecifier::preferenceSpecifierNamed_target_set_get_detail_cell_edit(
        calendar->title(), nullptr, {}, {}, "", PSCellType::Link, "");
    row->setProperty_forKey(QXCalendarTableCell::staticClass().name(), "cellClass");
    row->setProperty_forKey(velmora::qx_imageWithRoundedCornersSize_usingImage(
                                swatchCorner, velmora::qx_imageWithColor(calendar->CGColor())),
                            "iconImage");
    row->setIdentifier(calendar->calendarIdentifier());
    row->setUserInfo(calendar);
    return row;
}

std::vector<std::string> groupTitles(const Dictionary& groups) {
    std::vector<std::string> titles;
    titles.reserve(groups.size());
    for (const auto& [title, calendars] : groups) titles.push_back(title);
    std::ranges::sort(titles, [](const std::string& one, const std::string& other) {
        const auto order = platform::compareIgnoringCase(one, other);
        // Titles that differ in case only must not change places from one opening to the next.
        return order == std::strong_ordering::equal ? one < other : order == std::strong_ordering::less;
    });
    return titles;
}

}  // namespace

// Rows

SpecifierArray QuietrixCalendarsController::specifiers() {
    if (specifiers_ && !specifiers_->empty()) return specifiers_;
    const auto allDay = PSSpecifier::preferenceSpecifierNamed_target_set_get_detail_cell_edit(
        localized("Ignore All Day Events"), shared(this),
        method("setPreferenceValue:specifier:", &QuietrixCalendarsController::setPreferenceValue_specifier),
        method("readPreferenceValue:", &QuietrixCalendarsController::readPreferenceValue), "",
        PSCellType::Switch, "");
    allDay->setIdentifier("allDayEventsIgnored");
    allDay->setProperty_forKey(true, "default");
    allDay->setProperty_forKey(QXSwitchCell::staticClass().name(), "cellClass");
    // On the row itself: there is no group ahead of it.
    allDay->setProperty_forKey(localized("When turned on Quietrix Go ignores the 'all day' events for the "
                                         "below selected calendars."),
                               "footerText");

    auto rows = std::make_shared<SpecifierList>(SpecifierList{allDay});
    const auto calendars = calendarSpecifiers();
    rows->insert(rows->end(), calendars.begin(), calendars.end());
    specifiers_ = std::move(rows);
    return specifiers_;
}

SpecifierList QuietrixCalendarsController::calendarSpecifiers() {
    SpecifierList rows;
    const Value groups = specifier() ? specifier()->userInfo()["calendars"] : Value();
    if (groups.dictionary() == nullptr) return rows;
    for (const auto& title : groupTitles(*groups.dictionary())) {
        rows.push_back(PSSpecifier::groupSpecifierWithName(title));
        const Value calendars = groups[title];
        if (calendars.array() == nullptr) continue;
        for (const auto& entry : *calendars.array()) {
            if (const auto calendar = entry.objectAs<EKCalendar>()) rows.push_back(calendarRow(calendar));
        }
    }
    return rows;
}

// Values

Value QuietrixCalendarsController::readPreferenceValue(const Row& specifier) {
    const auto profile = profileOfScreen(*this);
    return profile ? profile->valueForKey(specifier->identifier().value_or("")) : Value();
}

void QuietrixCalendarsController::setPreferenceValue_specifier(const Value& value, const Row& specifier) {
    if (const auto profile = profileOfScreen(*this))
        profile->setValue_forKey(value, specifier->identifier().value_or(""));
    saveProfile();
}

bool QuietrixCalendarsController::isCalendarSelected(const std::string& identifier) const {
    const auto profile = profileOfScreen(*this);
    return profile && std::ranges::find(profile->calendarIdentifiers(), identifier) !=
                          profile->calendarIdentifiers().end();
}

void QuietrixCalendarsController::saveProfile() {
    saveExistingProfile(*this);
}

// Cells

QuietrixCalendarsController::Row QuietrixCalendarsController::rowAt(IndexPath path) {
    return specifierAtIndex(indexForRow_inGroup(path.row, path.section));
}

std::shared_ptr<platform::PSTableCell> QuietrixCalendarsController::tableView_cellForRowAtIndexPath(
    const Table& table, IndexPath path) {
    auto cell = ProductScreen::tableView_cellForRowAtIndexPath(table, path);
    const auto row = rowAt(path);
    if (!cell || !row) return cell;
    const std::string identifier = row->identifier().value_or("");
    if (identifier == eventStatusIdentifier) {
        const auto profile = profileOfScreen(*this);
        cell->detailTextLabel()->setTextColor(platform::UIColor::darkGrayColor());
        cell->detailTextLabel()->setText(profile ? std::optional(profile->applyProfileEventStatusString())
                                                 : std::nullopt);
        return cell;
    }
    cell->setTintColor(QXUtils::isIOS11() ? platform::UIColor::darkGrayColor() : customNavigationBarColor());
    cell->setAccessoryType(isCalendarSelected(identifier) ? platform::UITableViewCellAccessoryCheckmark
                                                          : platform::UITableViewCellAccessoryNone);
    return cell;
}

void QuietrixCalendarsController::tableView_didSelectRowAtIndexPath(const Table& table, IndexPath path) {
    const auto row = rowAt(path);
    if (!row) return;
    const std::string identifier = row->identifier().value_or("");
    if (identifier == eventStatusIdentifier) {
        ProductScreen::tableView_didSelectRowAtIndexPath(table, path);
        return;
    }
    const auto cell = table->cellForRowAtIndexPath(path);
    table->deselectRowAtIndexPath_animated(path, false);
    const bool selected = isCalendarSelected(identifier);
    if (const auto profile = profileOfScreen(*this)) {
        auto& chosen = profile->mutableCalendarIdentifiers();
        if (selected) {
            std::erase(chosen, identifier);
        } else {
            chosen.push_back(identifier);
        }
    }
    if (cell) {
        cell->setAccessoryType(selected ? platform::UITableViewCellAccessoryNone
                                        : platform::UITableViewCellAccessoryCheckmark);
    }
    saveProfile();
}

bool QuietrixCalendarsController::rowCanBeSelected(IndexPath path) {
    return rowAt(path) != nullptr;
}

// Life cycle

void QuietrixCalendarsController::viewDidLoad() {
    ProductScreen::viewDidLoad();
    platform::NotificationCenter::defaultCenter().addObserver_selector_name_object(
        shared(this),
        method("profileAppliedStateChanged:", &QuietrixCalendarsController::profileAppliedStateChanged),
        ProfileAppliedStateChangedNotification, nullptr);
}

void QuietrixCalendarsController::profileAppliedStateChanged(const platform::Notification&) {
    if (!specifier()) return;
    specifier()->setUserInfo(Dictionary{{"profile", presentRecordOf(profileOfScreen(*this))},
                                        {"calendars", QXEventManager::sharedManager()->groupedCalendars()}});
}

}  // namespace quietrix
