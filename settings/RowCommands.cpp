// SPDX-License-Identifier: MIT
#include "settings/RowCommands.h"

#include <memory>
#include <string>

#include "platform/preferences/PSEditableListController.h"
#include "platform/uikit/UIControl.h"
#include "settings/Front.h"

namespace settings {

using platform::failure;
using platform::IndexPath;
using platform::Result;

namespace {

/// A row of the list in front that is no group row.
struct Row {
    std::shared_ptr<platform::PSListController> list;
    std::int64_t index = 0;
    IndexPath path;
    std::shared_ptr<platform::PSSpecifier> specifier;
};

Result<Row> rowOf(const CommandFields& fields) {
    const Result<std::int64_t> index = fields.integer("row");
    if (!index) return std::unexpected(index.error());
    Row row{Front::now().list(), *index, {}, nullptr};
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

Result<void> tapRow(Application& /*application*/, const CommandFields& fields) {
    const Result<Row> row = rowOf(fields);
    if (!row) return std::unexpected(row.error());
    if (!row->list->rowCanBeSelected(row->path)) {
        return failure("Row " + std::to_string(row->index) + " does nothing when it is tapped.");
    }
    const auto& table = row->list->table();
    table->selectRowAtIndexPath(row->path);
    row->list->tableView_didSelectRowAtIndexPath(table, row->path);
    return {};
}

Result<void> setRow(Application& /*application*/, const CommandFields& fields) {
    const Result<Row> row = rowOf(fields);
    if (!row) return std::unexpected(row.error());
    if (!fields.has("value")) return failure("\"value\" is missing.");
    const auto cell = row->list->cellAtIndex(row->index);
    if (!cell || isDisabled(*row, cell.get())) {
        return failure("Row " + std::to_string(row->index) + " cannot be moved.");
    }
    return cell->userMovedControl(fields.value("value"));
}

Result<void> deleteRow(Application& /*application*/, const CommandFields& fields) {
    const Result<Row> row = rowOf(fields);
    if (!row) return std::unexpected(row.error());
    const auto editable = std::dynamic_pointer_cast<platform::PSEditableListController>(row->list);
    if (!editable || !editable->userDeletedRow(row->path)) {
        return failure("Row " + std::to_string(row->index) + " cannot be deleted.");
    }
    return {};
}

Result<void> editRows(Application& /*application*/, const CommandFields& fields) {
    const Result<bool> on = fields.boolean("on");
    if (!on) return std::unexpected(on.error());
    const auto editable = std::dynamic_pointer_cast<platform::PSEditableListController>(Front::now().list());
    if (!editable) return failure("The rows of this screen cannot be edited.");
    editable->setEditing(*on);
    return {};
}

}  // namespace settings
