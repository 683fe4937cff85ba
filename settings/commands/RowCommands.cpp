// SPDX-License-Identifier: MIT
#include "settings/commands/RowCommands.h"

#include <memory>
#include <optional>
#include <string>

#include "platform/preferences/PSEditableListController.h"
#include "platform/uikit/UIControl.h"
#include "settings/application/RowKeyText.h"
#include "settings/application/TopScreen.h"

namespace settings {

using platform::failure;
using platform::IndexPath;
using platform::Result;

namespace {

/// A row of the list on top that is no group row.
struct Row {
    std::shared_ptr<platform::PSListController> list;
    std::int64_t index = 0;
    IndexPath path;
    std::shared_ptr<platform::PSSpecifier> specifier;
};

/// The index of the row that is meant.
Outcome<std::int64_t> indexOf(const CommandFields& fields, platform::PSListController* list) {
    const Result<std::optional<std::string>> key = fields.optionalText("key");
    if (!key) return std::unexpected(key.error());
    if (!*key || fields.has("row")) {
        const Result<std::int64_t> index = fields.integer("row");
        if (!index) return std::unexpected(index.error());
        if (!*key) return *index;
    }
    const std::int64_t index = list != nullptr ? list->indexOfKey(rowKeyOf(**key)) : -1;
    if (index < 0) return stale("This screen has no row with the key \"" + **key + "\" (any more).");
    return index;
}

Outcome<Row> rowOf(const CommandFields& fields) {
    Row row{TopScreen::now().list(), 0, {}, nullptr};
    const Outcome<std::int64_t> index = indexOf(fields, row.list.get());
    if (!index) return std::unexpected(index.error());
    row.index = *index;
    if (!row.list) return failure("This screen has no rows.");
    row.specifier = row.list->specifierAtIndex(row.index);
    const std::string name = "Row " + std::to_string(row.index);
    if (!row.specifier) {
        const std::size_t count = row.list->specifiers()->size();
        return failure(name + " is out of range: the screen has " + std::to_string(count) + " rows.");
    }
    const auto path = row.list->indexPathForIndex(row.index);
    if (!path) return failure(name + " is a group row.");
    row.path = *path;
    return row;
}

bool isDisabled(const Row& row, const platform::PSTableCell* cell) {
    const auto enabled = row.specifier->propertyForKey("enabled");
    if (!enabled.isNil() && !enabled.isTrue()) return true;
    if (!cell) return false;
    const auto control = std::dynamic_pointer_cast<platform::UIControl>(cell->controlView());
    return control && !control->isEnabled();
}

}  // namespace

Outcome<void> tapRow(Application& /*application*/, const CommandFields& fields) {
    const Outcome<Row> row = rowOf(fields);
    if (!row) return std::unexpected(row.error());
    if (!row->list->rowCanBeSelected(row->path)) {
        return failure("Row " + std::to_string(row->index) + " does nothing when it is tapped.");
    }
    const auto& table = row->list->table();
    table->selectRowAtIndexPath(row->path);
    row->list->tableView_didSelectRowAtIndexPath(table, row->path);
    return {};
}

Outcome<void> setRow(Application& /*application*/, const CommandFields& fields) {
    const Outcome<Row> row = rowOf(fields);
    if (!row) return std::unexpected(row.error());
    if (!fields.has("value")) return failure("\"value\" is missing.");
    const auto cell = row->list->cellAtIndex(row->index);
    if (!cell || isDisabled(*row, cell.get())) {
        return failure("Row " + std::to_string(row->index) + " cannot be moved.");
    }
    return cell->userMovedControl(fields.value("value"));
}

Outcome<void> deleteRow(Application& /*application*/, const CommandFields& fields) {
    const Outcome<Row> row = rowOf(fields);
    if (!row) return std::unexpected(row.error());
    const auto editable = std::dynamic_pointer_cast<platform::PSEditableListController>(row->list);
    if (!editable || !editable->userDeletedRow(row->path)) {
        return failure("Row " + std::to_string(row->index) + " cannot be deleted.");
    }
    return {};
}

Outcome<void> editRows(Application& /*application*/, const CommandFields& fields) {
    const Result<bool> on = fields.boolean("on");
    if (!on) return std::unexpected(on.error());
    const auto editable =
        std::dynamic_pointer_cast<platform::PSEditableListController>(TopScreen::now().list());
    if (!editable) return failure("The rows of this screen cannot be edited.");
    editable->setEditing(*on);
    return {};
}

}  // namespace settings
