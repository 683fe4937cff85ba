// SPDX-License-Identifier: MIT
#include "conditions/calendars/QuietrixCalendarsController.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "conditions/calendars/QXCalendarTableCell.h"
#include "platform/eventkit/EKCalendar.h"
#include "platform/foundation/CaseInsensitive.h"
#include "profile/cells/QXSwitchCell.h"
#include "profile/model/QXEventManager.h"
#include "profile/model/QXUtils.h"
#include "shell/base/Localization.h"
#include "shell/base/Rows.h"
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
    return makeRow(
        {.name = calendar->title(),
         .cell = PSCellType::Link,
         .identifier = calendar->calendarIdentifier(),
         .userInfo = calendar,
         .properties = {{"cellClass", QXCalendarTableCell::staticClass().name()},
                        {"iconImage", velmora::qx_imageWithRoundedCornersSize_usingImage(
                                          swatchCorner, velmora::qx_imageWithColor(calendar->CGColor()))}}});
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
    specifiers_ = std::make_shared<SpecifierList>(SpecifierList{allDayRow()});
    append(*specifiers_, calendarSpecifiers());
    return specifiers_;
}

QuietrixCalendarsController::Row QuietrixCalendarsController::allDayRow() {
    return makeRow(
        {.name = localized("Ignore All Day Events"),
         .cell = PSCellType::Switch,
         .identifier = "allDayEventsIgnored",
         .target = shared(this),
         .set = method("setPreferenceValue:specifier:",
                       &QuietrixCalendarsController::setPreferenceValue_specifier),
         .get = method("readPreferenceValue:", &QuietrixCalendarsController::readPreferenceValue),
         .properties = {
             {"default", true},
             {"cellClass", QXSwitchCell::staticClass().name()},
             // On the row itself: there is no group ahead of it.
             {"footerText", localized("When turned on Quietrix Go ignores the 'all day' events for the "
                                      "below selected calendars.")}}});
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
    const auto record = profile();
    return record ? record->valueForKey(specifier->identifier().value_or("")) : Value();
}

void QuietrixCalendarsController::setPreferenceValue_specifier(const Value& value, const Row& specifier) {
    if (const auto record = profile()) record->setValue_forKey(value, specifier->identifier().value_or(""));
    saveProfile();
}

bool QuietrixCalendarsController::isCalendarSelected(const std::string& identifier) const {
    const auto record = profile();
    return record && std::ranges::find(record->calendarIdentifiers(), identifier) !=
                         record->calendarIdentifiers().end();
}

Saving QuietrixCalendarsController::saving() {
    return {.waiting = Screen::MayGo};
}

Dictionary QuietrixCalendarsController::userInfoWith(const std::shared_ptr<QXProfile>& profile) const {
    return {{"profile", profile}, {"calendars", QXEventManager::sharedManager()->groupedCalendars()}};
}

// Cells

std::shared_ptr<platform::PSTableCell> QuietrixCalendarsController::tableView_cellForRowAtIndexPath(
    const Table& table, IndexPath path) {
    auto cell = PickerScreen::tableView_cellForRowAtIndexPath(table, path);
    const auto row = specifierAtIndexPath(path);
    if (!cell || !row) return cell;
    const std::string identifier = row->identifier().value_or("");
    if (identifier == eventStatusIdentifier) {
        const auto record = profile();
        cell->detailTextLabel()->setTextColor(platform::UIColor::darkGrayColor());
        cell->detailTextLabel()->setText(record ? std::optional(record->applyProfileEventStatusString())
                                                : std::nullopt);
        return cell;
    }
    cell->setTintColor(QXUtils::isIOS11() ? platform::UIColor::darkGrayColor() : customNavigationBarColor());
    cell->setAccessoryType(isCalendarSelected(identifier) ? platform::UITableViewCellAccessoryCheckmark
                                                          : platform::UITableViewCellAccessoryNone);
    return cell;
}

void QuietrixCalendarsController::tableView_didSelectRowAtIndexPath(const Table& table, IndexPath path) {
    const auto row = specifierAtIndexPath(path);
    if (!row) return;
    const std::string identifier = row->identifier().value_or("");
    if (identifier == eventStatusIdentifier) {
        PickerScreen::tableView_didSelectRowAtIndexPath(table, path);
        return;
    }
    const auto cell = table->cellForRowAtIndexPath(path);
    table->deselectRowAtIndexPath_animated(path, false);
    const bool selected = isCalendarSelected(identifier);
    if (const auto record = profile()) {
        auto& chosen = record->mutableCalendarIdentifiers();
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
    return specifierAtIndexPath(path) != nullptr;
}

}  // namespace quietrix
