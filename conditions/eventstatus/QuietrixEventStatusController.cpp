// SPDX-License-Identifier: MIT
#include "conditions/eventstatus/QuietrixEventStatusController.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <utility>

#include "conditions/eventstatus/QXEventStatusTableCell.h"
#include "profile/model/EventStatus.h"
#include "shell/base/Localization.h"
#include "shell/base/Rows.h"
#include "shell/chrome/EditedProfile.h"

namespace quietrix {

using platform::IndexPath;
using platform::SpecifierArray;
using platform::SpecifierList;

PLATFORM_REGISTER_CLASS(QuietrixEventStatusController)

namespace {

/// In the order of the stored values; in the phone's language, looked up at each use.
std::array<std::string, eventStatusNames.size()> statusTitles() {
    std::array<std::string, eventStatusNames.size()> titles;
    for (std::size_t status = 0; status < titles.size(); ++status)
        titles.at(status) = localized(eventStatusNames.at(status));
    return titles;
}

/// -1 for a title that no status has.
std::int64_t statusOfTitle(std::string_view title) {
    const auto titles = statusTitles();
    const auto place = std::ranges::find(titles, title);
    return place == titles.end() ? -1 : place - titles.begin();
}

}  // namespace

SpecifierArray QuietrixEventStatusController::specifiers() {
    if (specifiers_ && !specifiers_->empty()) return specifiers_;
    auto rows = std::make_shared<SpecifierList>();
    for (const auto& title : statusTitles()) {
        rows->push_back(
            makeRow({.name = title,
                     .cell = platform::PSCellType::StaticText,
                     .identifier = title,
                     .properties = {{"cellClass", QXEventStatusTableCell::staticClass().name()}}}));
    }
    specifiers_ = std::move(rows);
    return specifiers_;
}

std::shared_ptr<platform::PSTableCell> QuietrixEventStatusController::tableView_cellForRowAtIndexPath(
    const Table& table, IndexPath path) {
    auto cell = ProductScreen::tableView_cellForRowAtIndexPath(table, path);
    const auto row = specifierAtIndexPath(path);
    if (!cell || !row) return cell;
    cell->textLabel()->setUserInteractionEnabled(true);
    cell->setUserInteractionEnabled(true);
    // Never seen: the cell empties this label and shows its own.
    cell->textLabel()->setTextColor(platform::UIColor::redColor());
    cell->setTag(path.row);
    cell->setTintColor(customNavigationBarColor());
    const auto profile = profileOfScreen(*this);
    const std::int64_t chosen = profile ? profile->applyProfileEventStatus() : 0;
    cell->setAccessoryType(statusOfTitle(row->identifier().value_or("")) == chosen
                               ? platform::UITableViewCellAccessoryCheckmark
                               : platform::UITableViewCellAccessoryNone);
    cell->setNeedsLayout();
    return cell;
}

void QuietrixEventStatusController::tableView_didSelectRowAtIndexPath(const Table& table, IndexPath path) {
    const auto cell = table->cellForRowAtIndexPath(path);
    table->deselectRowAtIndexPath_animated(path, false);
    const auto row = specifierAtIndexPath(path);
    if (!row) return;
    const auto profile = profileOfScreen(*this);
    const std::int64_t old = statusOfTitle(profile ? profile->applyProfileEventStatusString() : "");
    if (const auto oldCell = table->cellForRowAtIndexPath({path.section, old}))
        oldCell->setAccessoryType(platform::UITableViewCellAccessoryNone);
    if (cell) cell->setAccessoryType(platform::UITableViewCellAccessoryCheckmark);
    if (profile) profile->setApplyProfileEventStatus(statusOfTitle(row->identifier().value_or("")));
    saveEditedProfile(*this, profile, {.waiting = Screen::MayGo});
}

bool QuietrixEventStatusController::rowCanBeSelected(IndexPath path) {
    return specifierAtIndexPath(path) != nullptr;
}

}  // namespace quietrix
