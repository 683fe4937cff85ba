// SPDX-License-Identifier: MIT
#include "settings/state/RowWriter.h"

#include <string>
#include <utility>

#include "platform/uikit/UISwitch.h"
#include "settings/application/RowKeyText.h"

namespace settings {

using platform::Array;
using platform::Dictionary;
using platform::PSTableCell;
using platform::UILabel;
using platform::Value;

namespace {

/// Fields that only a cell fills, as they are for a row without one.
Dictionary withoutCell() {
    Dictionary row;
    for (const char* field : {"text", "detailText", "detailTextColour", "tint", "onTint", "background",
                              "titleFrame", "controlFrame", "value", "headerCell"}) {
        row.emplace(field, nullptr);
    }
    row.emplace("accessory", 0);
    row.emplace("height", 0);
    row.emplace("editingStyle", 0);
    row.emplace("tappable", false);
    row.emplace("labels", Array());
    return row;
}

/// A cell without a background of its own may have a view behind its contents in its place.
std::shared_ptr<platform::UIColor> backgroundOf(const PSTableCell& cell) {
    if (cell.backgroundColor() || cell.subviews().empty()) return cell.backgroundColor();
    return cell.subviews().front()->backgroundColor();
}

}  // namespace

Value RowWriter::row(std::int64_t index) const {
    const auto specifier = list_.specifierAtIndex(index);
    if (!specifier) return nullptr;
    const auto path = list_.indexPathForIndex(index);
    Dictionary row = withoutCell();
    row["key"] = rowKeyText(list_.keyAtIndex(index));
    row["index"] = index;
    row["section"] = list_.sectionForIndex(index);
    row["row"] = path ? Value(path->row) : Value();
    writeSpecifier(*specifier, row);

    // Making the cell may change the row (a cell may fill in a property), hence after it was held and not
    // before.
    const auto cell = list_.cellAtIndex(index);
    if (cell) writeCell(*cell, row);
    if (!path) {
        if (cell) row["headerCell"] = headerCell(*cell);
        return row;
    }
    if (row["value"].isNil() && specifier->getter())
        row["value"] = values_.property(specifier->performGetter());
    row["height"] = list_.tableView_heightForRowAtIndexPath(list_.table(), *path);
    row["editingStyle"] = list_.tableView_editingStyleForRowAtIndexPath(list_.table(), *path);
    row["tappable"] = list_.rowCanBeSelected(*path);
    return row;
}

void RowWriter::writeSpecifier(platform::PSSpecifier& specifier, Dictionary& row) const {
    row["kind"] = std::to_underlying(specifier.cellType());
    row["name"] = ScreenValues::text(specifier.name());
    row["identifier"] = ScreenValues::text(specifier.identifier());
    row["set"] = ScreenValues::textUnlessEmpty(specifier.setter().selector());
    row["get"] = ScreenValues::textUnlessEmpty(specifier.getter().selector());
    row["action"] = ScreenValues::textUnlessEmpty(specifier.buttonAction().selector());
    row["detail"] = ScreenValues::textUnlessEmpty(specifier.detailControllerClass());
    row["cellClass"] = values_.property(specifier.propertyForKey("cellClass"));
    row["userInfo"] = ScreenValues::userInfo(specifier.userInfo());
    Dictionary properties;
    for (const auto& [key, property] : specifier.properties()) {
        if (key != "cellClass" && key != "label") properties.emplace(key, values_.property(property));
    }
    row["properties"] = std::move(properties);
}

void RowWriter::writeCell(PSTableCell& cell, Dictionary& row) const {
    row["value"] = values_.property(cell.controlValue());
    row["text"] = ScreenValues::text(cell.textLabel()->text());
    row["detailText"] = ScreenValues::text(cell.detailTextLabel()->text());
    row["detailTextColour"] = values_.colour(cell.detailTextLabel()->textColor());
    row["tint"] = values_.colour(cell.tintColor());
    row["background"] = values_.colour(backgroundOf(cell));
    row["accessory"] = cell.accessoryType();
    row["height"] = cell.frame().height;
    if (const auto control = cell.controlView()) {
        row["controlFrame"] = ScreenValues::frame(control->frame());
        if (!cell.textLabel()->isHidden()) row["titleFrame"] = ScreenValues::frame(cell.textLabel()->frame());
        if (const auto* toggle = dynamic_cast<const platform::UISwitch*>(control.get())) {
            row["onTint"] = values_.colour(toggle->onTintColor());
        }
    }
    Array labels;
    collectLabels(cell, cell, labels);
    row["labels"] = std::move(labels);
}

Value RowWriter::headerCell(const PSTableCell& cell) const {
    return Dictionary{{"class", cell.getClass().name()},
                      {"title", ScreenValues::text(cell.textLabel()->text())},
                      {"subTitle", ScreenValues::text(cell.detailTextLabel()->text())}};
}

void RowWriter::collectLabels(const PSTableCell& cell, const platform::UIView& view, Array& labels) const {
    for (const auto& subview : view.subviews()) {
        if (subview == cell.textLabel() || subview == cell.detailTextLabel() || subview->isHidden()) continue;
        if (const auto* label = dynamic_cast<const UILabel*>(subview.get())) {
            labels.emplace_back(Dictionary{{"tag", label->tag()},
                                           {"text", label->text().value_or("")},
                                           {"frame", ScreenValues::frame(label->frame())},
                                           {"colour", values_.colour(label->textColor())},
                                           {"alignment", label->textAlignment()}});
        }
        collectLabels(cell, *subview, labels);
    }
}

}  // namespace settings
