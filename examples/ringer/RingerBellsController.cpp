// SPDX-License-Identifier: MIT
#include "RingerBellsController.h"

#include <algorithm>
#include <functional>

#include "RingerRows.h"
#include "RingerSettings.h"

namespace ringer {

using platform::Array;
using platform::Dictionary;
using platform::IndexPath;
using platform::method;
using platform::PSCellType;
using platform::PSSpecifier;
using platform::UITableView;
using platform::Value;

PLATFORM_REGISTER_CLASS(RingerBellsController)

namespace {

constexpr const char* addIdentifier = "add";

/// What others may have put among them is no bell, and stays in the file.
Array storedBells() {
    const Value stored = settings::valueForKey("bells");
    Array bells = stored.array() ? *stored.array() : Array();
    std::erase_if(bells, [](const Value& bell) { return !bell.dictionary(); });
    return bells;
}

bool isBell(const Value& bell, const PSSpecifier& row) {
    return bell.dictionary() && row.identifier() && bell["identifier"].stringOr() == *row.identifier();
}

/// Changes the bells as they are in the file by then, not as they were when the rows were made.
platform::Result<void> changeBells(const std::function<void(Array&)>& edit) {
    return settings::change([&](Dictionary& values) {
        const auto stored = values.find("bells");
        Array bells = stored != values.end() && stored->second.array() ? *stored->second.array() : Array();
        edit(bells);
        values.insert_or_assign("bells", std::move(bells));
    });
}

/// One more than the largest, so that no bell takes the place of another.
std::string unusedIdentifier(const Array& bells) {
    int largest = 0;
    for (const Value& bell : bells) {
        const std::string identifier = bell["identifier"].stringOr();
        if (identifier.size() < 9 && !identifier.empty() &&
            std::ranges::all_of(identifier, [](char digit) { return digit >= '0' && digit <= '9'; }))
            largest = std::max(largest, std::stoi(identifier));
    }
    return std::to_string(largest + 1);
}

}  // namespace

platform::SpecifierArray RingerBellsController::specifiers() {
    if (specifiers_) return specifiers_;
    const auto self = shared(this);
    specifiers_ = std::make_shared<platform::SpecifierList>();
    specifiers_->push_back(makeGroup({}, text("Swipe over a bell to delete it.")));
    for (const Value& bell : storedBells()) {
        specifiers_->push_back(
            makeRow({.name = "",
                     .identifier = bell["identifier"].stringOr(),
                     .cell = PSCellType::EditText,
                     .target = self,
                     .set = method("setBellName:specifier:", &RingerBellsController::setBellName_specifier),
                     .get = method("bellName:", &RingerBellsController::bellName),
                     .properties = {{"placeholder", text("Bell")}}}));
    }
    specifiers_->push_back(makeGroup({}));
    specifiers_->push_back(
        makeRow({.name = text("Add a bell"),
                 .identifier = addIdentifier,
                 .cell = PSCellType::Button,
                 .target = self,
                 .action = method("addBellAction:", &RingerBellsController::addBellAction)}));
    return specifiers_;
}

void RingerBellsController::viewDidLoad() {
    PSEditableListController::viewDidLoad();
    platform::NotificationCenter::defaultCenter().addObserver_selector_name_object(
        shared(this), method("settingsChanged:", &RingerBellsController::settingsChanged),
        settings::changedNotification, nullptr);
}

std::int64_t RingerBellsController::tableView_editingStyleForRowAtIndexPath(
    const std::shared_ptr<UITableView>& /*table*/, IndexPath path) {
    const auto row = specifierAtIndexPath(path);
    return row && row->identifier() != addIdentifier ? platform::UITableViewCellEditingStyleDelete
                                                     : platform::UITableViewCellEditingStyleNone;
}

void RingerBellsController::tableView_commitEditingStyle_forRowAtIndexPath(
    const std::shared_ptr<UITableView>& table, std::int64_t style, IndexPath path) {
    const platform::SpecifierList before = *specifiers();
    PSEditableListController::tableView_commitEditingStyle_forRowAtIndexPath(table, style, path);
    // Which row the swipe meant is the base's to know; the one that is gone now has been deleted.
    for (const auto& row : before) {
        if (indexOfSpecifier(row) >= 0) continue;
        const auto deleted = changeBells([&](Array& bells) {
            std::erase_if(bells, [&](const Value& bell) { return isBell(bell, *row); });
        });
        if (!deleted) reloadSpecifiers();
        showError(*this, deleted);
    }
}

void RingerBellsController::setBellName_specifier(const Value& value,
                                                  const std::shared_ptr<PSSpecifier>& specifier) {
    showError(*this, changeBells([&](Array& bells) {
        for (Value& bell : bells) {
            if (!isBell(bell, *specifier)) continue;
            Dictionary renamed = *bell.dictionary();
            renamed.insert_or_assign("name", value);
            bell = std::move(renamed);
        }
    }));
}

Value RingerBellsController::bellName(const std::shared_ptr<PSSpecifier>& specifier) {
    for (const Value& bell : storedBells()) {
        if (isBell(bell, *specifier)) return bell["name"];
    }
    return nullptr;
}

void RingerBellsController::addBellAction(const std::shared_ptr<PSSpecifier>& /*specifier*/) {
    showError(*this, changeBells([](Array& bells) {
        bells.emplace_back(Dictionary{{"identifier", unusedIdentifier(bells)}, {"name", text("New bell")}});
    }));
}

void RingerBellsController::settingsChanged(const platform::Notification& /*notification*/) {
    reloadSpecifiers();
}

}  // namespace ringer
