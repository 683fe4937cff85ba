// SPDX-License-Identifier: MIT
#include "profile/cells/QXEditableTableCell.h"

namespace quietrix {

PLATFORM_REGISTER_CELL_CLASS(QXEditableTableCell)

bool QXEditableTableCell::textFieldShouldReturn(platform::UITextField& field) {
    field.resignFirstResponder();
    return true;
}

void QXEditableTableCell::textFieldDidBeginEditing(platform::UITextField& field) {
    if (field.returnKeyType() != platform::UIReturnKeyDone) field.setReturnKeyType(platform::UIReturnKeyDone);
    PSEditableTableCell::textFieldDidBeginEditing(field);
}

}  // namespace quietrix
