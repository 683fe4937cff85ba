// SPDX-License-Identifier: MIT
#pragma once

#include "platform/preferences/PSControlTableCell.h"
#include "platform/uikit/UITextField.h"

namespace platform {

/// A text row. The field shows the property "value" (else the getter's value), its "placeholder", and writes
/// its text through the row's setter when editing ends with another text than it began with. A "value" that
/// the row has follows the text that is written, so that the row never falls back to the old one.
class PSEditableTableCell : public PSControlTableCell, public UITextFieldDelegate {
    PLATFORM_CLASS(PSEditableTableCell, PSControlTableCell)

  public:
    PSEditableTableCell(std::int64_t style, std::string reuseIdentifier,
                        std::shared_ptr<PSSpecifier> specifier);
    ~PSEditableTableCell() override;

    std::shared_ptr<UITextField> textField() const;
    void refreshCellContentsWithSpecifier(const std::shared_ptr<PSSpecifier>& specifier) override;
    Value controlValue() const override;
    /// A string: begins editing, types it in place of the old text, presses return, and leaves the field if
    /// return did not.
    Result<void> userMovedControl(const Value& value) override;
    void layoutSubviews() override;

    void textFieldDidBeginEditing(UITextField& field) override;
    /// The base ends editing and allows the return.
    bool textFieldShouldReturn(UITextField& field) override;
    void textFieldDidEndEditing(UITextField& field) override;

  private:
    std::string textAtBegin_;
};

}  // namespace platform
