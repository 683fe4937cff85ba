// SPDX-License-Identifier: MIT
#include "profile/hours/QXDateRangePane.h"

#include <optional>
#include <string>
#include <utility>

#include "platform/foundation/Calendar.h"
#include "platform/preferences/PSTableCell.h"
#include "profile/cells/EditableTimeColor.h"
#include "profile/model/QXUtils.h"
#include "shell/base/ErrorAlert.h"
#include "shell/base/Localization.h"
#include "shell/chrome/EditedProfile.h"

namespace quietrix {

using platform::Calendar;
using platform::Date;
using platform::IndexPath;
using platform::PSSpecifier;
using platform::UITableView;
using platform::UITableViewCell;

PLATFORM_REGISTER_ABSTRACT_CLASS(QXDateRangePane)

namespace {

constexpr std::int64_t tableTag = 5412;
constexpr double rowHeight = 44;
constexpr double rowsHeight = 130;
constexpr double pickerHeight = 216;
constexpr double tableTop = 20;
constexpr const char* cellIdentifier = "dateCell";

/// Everybody changes the shared formatter's pattern, so each use sets it.
platform::DateFormatter& timeFormatter() {
    auto& formatter = QXUtils::dateFormatter();
    formatter.setDateFormat("h:mm a");
    return formatter;
}

std::string keyOfRow(std::int64_t row) {
    return row > 0 ? "endTime" : "startTime";
}

/// The time of day alone, on the one day that all such times share; midnight for no date.
Date timeOfDay(std::optional<Date> date) {
    constexpr std::uint64_t parts =
        platform::CalendarUnitHour | platform::CalendarUnitMinute | platform::CalendarUnitSecond;
    const auto calendar = Calendar::currentCalendar();
    return calendar.dateFromComponents(date ? calendar.components_fromDate(parts, *date)
                                            : platform::DateComponents());
}

}  // namespace

std::shared_ptr<QXDateRangePane> QXDateRangePane::initWithFrame(platform::Rect frame) {
    std::shared_ptr<QXDateRangePane> pane(new QXDateRangePane(frame));
    pane->initComponents();
    return pane;
}

QXDateRangePane::~QXDateRangePane() {
    if (const auto rows = table()) {
        rows->setDataSource(nullptr);
        rows->setDelegate(nullptr);
    }
}

// Building and placing

void QXDateRangePane::initComponents() {
    datePicker_ = std::make_shared<platform::UIDatePicker>();
    datePicker_->setDatePickerMode(platform::UIDatePickerModeTime);
    datePicker_->setTag(0);
    datePicker_->addTarget_action_forControlEvents(
        shared(this), platform::method("timeChanged:", &QXDateRangePane::timeChanged),
        platform::UIControlEventValueChanged);
    addSubview(datePicker_);

    const auto rows = std::make_shared<UITableView>(platform::Rect{}, platform::UITableViewStyleGrouped);
    rows->setRowHeight(rowHeight);
    rows->setScrollEnabled(false);
    rows->setShowsVerticalScrollIndicator(true);
    rows->setUserInteractionEnabled(true);
    rows->setBounces(false);
    rows->setDelegate(this);
    rows->setDataSource(this);
    rows->setTag(tableTag);
    rows->registerCell_forCellReuseIdentifier(
        [](const std::string& identifier) {
            return std::make_shared<platform::PSTableCell>(platform::UITableViewCellStyleDefault, identifier,
                                                           nullptr);
        },
        cellIdentifier);
    addSubview(rows);
}

std::shared_ptr<UITableView> QXDateRangePane::table() {
    return std::dynamic_pointer_cast<UITableView>(viewWithTag(tableTag));
}

void QXDateRangePane::layoutSubviews() {
    PSEditingPane::layoutSubviews();
    const platform::Rect area = bounds();
    datePicker_->setFrame({0, area.height - pickerHeight, area.width, pickerHeight});
    const auto rows = table();
    const double height = area.height - pickerHeight - tableTop;
    rows->setFrame({0, tableTop, area.width, height});
    platform::Insets inset = rows->contentInset();
    inset.top = (height - rowsHeight) / 2;
    rows->setContentInset(inset);
    rows->selectRowAtIndexPath_animated_scrollPosition({0, 0}, false,
                                                       platform::UITableViewScrollPositionNone);
}

std::shared_ptr<QXProfile> QXDateRangePane::profile() const {
    return profileOfRow(preferenceSpecifier());
}

std::string QXDateRangePane::timeOfRow(std::int64_t row) const {
    const auto record = profile();
    return record ? record->valueForKey(keyOfRow(row)).stringOr() : "";
}

// The two rows

std::int64_t QXDateRangePane::numberOfSectionsInTableView(const Table&) {
    return 1;
}

std::int64_t QXDateRangePane::tableView_numberOfRowsInSection(const Table&, std::int64_t) {
    return 2;
}

std::shared_ptr<UITableViewCell> QXDateRangePane::tableView_cellForRowAtIndexPath(const Table& table,
                                                                                  IndexPath path) {
    auto cell = table->dequeueReusableCellWithIdentifier_forIndexPath(cellIdentifier, path);
    if (!cell)
        cell = std::make_shared<UITableViewCell>(platform::UITableViewCellStyleDefault, cellIdentifier);
    cell->textLabel()->setTextAlignment(platform::NSTextAlignmentCenter);
    cell->textLabel()->setText(
        stringWithFormat("%@ %@", {path.row > 0 ? localized("To") : localized("From"), timeOfRow(path.row)}));
    cell->textLabel()->setTextColor(editableTimeColor());
    return cell;
}

void QXDateRangePane::tableView_didSelectRowAtIndexPath(const Table&, IndexPath path) {
    datePicker_->setTag(path.row);
    showTimeOfRow(path.row);
}

void QXDateRangePane::setPreferenceSpecifier(std::shared_ptr<PSSpecifier> specifier) {
    PSEditingPane::setPreferenceSpecifier(std::move(specifier));
    showTimeOfRow(datePicker_->tag());
}

void QXDateRangePane::showTimeOfRow(std::int64_t row) {
    datePicker_->setDate_animated(timeFormatter().dateFromString(timeOfRow(row)), false);
}

// A new time

void QXDateRangePane::timeChanged(const std::shared_ptr<platform::Object>&) {
    const auto picked = datePicker_->date();
    if (!picked) return;
    const std::string time = timeFormatter().stringFromDate(*picked);
    if (!endsAfterStart(*picked)) {
        refuse();
        return;
    }
    if (const auto record = profile()) record->setValue_forKey(time, keyOfRow(datePicker_->tag()));
    const auto rows = table();
    const IndexPath edited{0, datePicker_->tag()};
    rows->reloadRowAtIndexPath_withRowAnimation(edited, platform::UITableViewRowAnimationNone);
    rows->selectRowAtIndexPath_animated_scrollPosition(edited, false,
                                                       platform::UITableViewScrollPositionNone);
    if (const auto screen = std::dynamic_pointer_cast<QXDateRangePaneDelegate>(delegate()))
        screen->timeChanged();
}

bool QXDateRangePane::endsAfterStart(Date picked) const {
    const auto record = profile();
    const bool editsEnd = datePicker_->tag() > 0;
    const Date other =
        timeOfDay(!record ? std::nullopt : (editsEnd ? record->startDate() : record->endDate()));
    const Date start = editsEnd ? other : timeOfDay(picked);
    const Date end = editsEnd ? timeOfDay(picked) : other;
    return end.secondsSinceReference - start.secondsSinceReference > 0;
}

void QXDateRangePane::refuse() {
    if (const auto screen = std::dynamic_pointer_cast<platform::PSViewController>(delegate())) {
        qx_showError(
            *screen,
            platform::Error{localized("Invalid configuration, 'To' time cannot be less than 'From' time.")});
    }
}

}  // namespace quietrix
