// SPDX-License-Identifier: MIT
#include "platform/preferences/PSEditableTableCell.h"

#include <algorithm>
#include <utility>

namespace platform {

PLATFORM_REGISTER_CELL_CLASS(PSEditableTableCell)

namespace {

std::string shownText(const Value& value) {
    return value.isNil() ? std::string() : value.description();
}

}  // namespace

PSEditableTableCell::PSEditableTableCell(std::int64_t style, std::string reuseIdentifier,
                                         std::shared_ptr<PSSpecifier> specifier)
    : PSControlTableCell(style, std::move(reuseIdentifier), std::move(specifier)) {
    auto field = std::make_shared<UITextField>();
    field->setDelegate(this);
    setControl(std::move(field));
}

PSEditableTableCell::~PSEditableTableCell() {
    if (const auto field = textField()) field->setDelegate(nullptr);
}

std::shared_ptr<UITextField> PSEditableTableCell::textField() const {
    return std::dynamic_pointer_cast<UITextField>(control());
}

void PSEditableTableCell::refreshCellContentsWithSpecifier(const std::shared_ptr<PSSpecifier>& specifier) {
    PSControlTableCell::refreshCellContentsWithSpecifier(specifier);
    const auto field = textField();
    if (!specifier || !field) return;
    field->setPlaceholder(shownText(specifier->propertyForKey("placeholder")));
    // What the user is typing is not taken from under the fingers.
    if (field->isFirstResponder()) return;
    const Value value = specifier->propertyForKey("value");
    field->setText(shownText(value.isNil() ? specifier->performGetter() : value));
}

Value PSEditableTableCell::controlValue() const {
    const auto field = textField();
    return field ? Value(field->text()) : Value();
}

Result<void> PSEditableTableCell::userMovedControl(const Value& value) {
    const auto self = shared(this);
    if (auto enabled = checkEnabled(); !enabled) return enabled;
    const std::string* text = value.string();
    const auto field = textField();
    if (text == nullptr || !field)
        return failure("A text field takes a text, not " + value.description() + ".");
    field->becomeFirstResponder();
    field->setText(*text);
    field->pressReturn();
    field->resignFirstResponder();
    return {};
}

void PSEditableTableCell::layoutSubviews() {
    PSControlTableCell::layoutSubviews();
    if (!control()) return;
    constexpr double margin = 16;
    constexpr double titleWidth = 100;
    constexpr double gap = 8;
    const Rect area = bounds();
    Rect title = textLabel()->frame();
    const bool hasTitle = !textLabel()->text().value_or("").empty();
    title.width = hasTitle ? std::min(titleWidth, title.width) : 0.0;
    textLabel()->setFrame(title);
    const double left = hasTitle ? title.x + title.width + gap : title.x;
    control()->setFrame({left, 0, std::max(0.0, area.width - left - margin), area.height});
}

void PSEditableTableCell::textFieldDidBeginEditing(UITextField& field) {
    textAtBegin_ = field.text();
}

bool PSEditableTableCell::textFieldShouldReturn(UITextField& field) {
    field.resignFirstResponder();
    return true;
}

void PSEditableTableCell::textFieldDidEndEditing(UITextField& field) {
    if (field.text() == textAtBegin_) return;
    const auto self = shared(this);
    textAtBegin_ = field.text();
    const auto row = specifier();
    if (row && row->setter() && row->target() && row->propertyForKey("value")) {
        row->setProperty_forKey(field.text(), "value");
    }
    writeBack();
}

}  // namespace platform
