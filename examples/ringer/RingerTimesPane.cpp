// SPDX-License-Identifier: MIT
#include "RingerTimesPane.h"

#include <algorithm>
#include <utility>

#include "RingerRows.h"
#include "RingerSettings.h"
#include "platform/foundation/DateFormatter.h"

namespace ringer {

using platform::IndexPath;
using platform::UIDatePicker;
using platform::UITableView;
using platform::UITableViewCell;

PLATFORM_REGISTER_CLASS(RingerTimesPane)

namespace {

constexpr double wheelHeight = 216;
constexpr double rowsTop = 35;
constexpr const char* cellIdentifier = "time";

const char* keyOfRow(std::int64_t row) {
    return row == 0 ? "firstBell" : "lastBell";
}

platform::DateFormatter timeFormatter() {
    platform::DateFormatter formatter;
    formatter.setDateFormat("h:mm a");
    return formatter;
}

}  // namespace

RingerTimesPane::~RingerTimesPane() {
    if (!rows_) return;
    rows_->setDataSource(nullptr);
    rows_->setDelegate(nullptr);
}

void RingerTimesPane::setPreferenceSpecifier(std::shared_ptr<platform::PSSpecifier> specifier) {
    PSEditingPane::setPreferenceSpecifier(std::move(specifier));
    if (!rows_) build();
    edit(wheel_->tag());
}

void RingerTimesPane::build() {
    rows_ = std::make_shared<UITableView>(platform::Rect{}, platform::UITableViewStyleGrouped);
    rows_->registerCell_forCellReuseIdentifier(
        [](const std::string& identifier) {
            return std::make_shared<UITableViewCell>(platform::UITableViewCellStyleDefault, identifier);
        },
        cellIdentifier);
    rows_->setDataSource(this);
    rows_->setDelegate(this);
    addSubview(rows_);
    wheel_ = std::make_shared<UIDatePicker>();
    wheel_->setDatePickerMode(platform::UIDatePickerModeTime);
    wheel_->addTarget_action_forControlEvents(shared(this),
                                              platform::method("timeChosen:", &RingerTimesPane::timeChosen),
                                              platform::UIControlEventValueChanged);
    addSubview(wheel_);
}

void RingerTimesPane::layoutSubviews() {
    PSEditingPane::layoutSubviews();
    if (!rows_) return;
    const platform::Rect area = bounds();
    rows_->setFrame({0, rowsTop, area.width, std::max(0.0, area.height - wheelHeight - rowsTop)});
    wheel_->setFrame({0, area.height - wheelHeight, area.width, wheelHeight});
    rows_->selectRowAtIndexPath({0, wheel_->tag()});
}

std::int64_t RingerTimesPane::numberOfSectionsInTableView(const Table& /*table*/) {
    return 1;
}

std::int64_t RingerTimesPane::tableView_numberOfRowsInSection(const Table& /*table*/,
                                                              std::int64_t /*section*/) {
    return 2;
}

std::shared_ptr<UITableViewCell> RingerTimesPane::tableView_cellForRowAtIndexPath(const Table& table,
                                                                                  IndexPath path) {
    auto cell = table->dequeueReusableCellWithIdentifier_forIndexPath(cellIdentifier, path);
    cell->textLabel()->setText(textWith(path.row == 0 ? "First bell at %@" : "Last bell at %@",
                                        settings::valueForKey(keyOfRow(path.row))));
    return cell;
}

void RingerTimesPane::tableView_didSelectRowAtIndexPath(const Table& /*table*/, IndexPath path) {
    edit(path.row);
}

void RingerTimesPane::edit(std::int64_t row) {
    wheel_->setTag(row);
    wheel_->setDate_animated(timeFormatter().dateFromString(settings::valueForKey(keyOfRow(row)).stringOr()),
                             false);
    setNeedsLayout();
}

void RingerTimesPane::timeChosen(const std::shared_ptr<platform::Object>& /*sender*/) {
    const auto chosen = wheel_->date();
    if (!chosen) return;
    const auto stored =
        settings::setValue_forKey(timeFormatter().stringFromDate(*chosen), keyOfRow(wheel_->tag()));
    rows_->reloadRowAtIndexPath_withRowAnimation({0, wheel_->tag()}, platform::UITableViewRowAnimationNone);
    setNeedsLayout();
    if (const auto screen = std::dynamic_pointer_cast<platform::UIViewController>(delegate()))
        showError(*screen, stored);
}

}  // namespace ringer
