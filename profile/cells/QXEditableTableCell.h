// SPDX-License-Identifier: MIT
#pragma once

#include "platform/preferences/PSEditableTableCell.h"

namespace quietrix {

/// A text row whose keyboard always has the Done key, which closes it and does nothing else.
class QXEditableTableCell : public platform::PSEditableTableCell {
    PLATFORM_CLASS(QXEditableTableCell, platform::PSEditableTableCell)

  public:
    using PSEditableTableCell::PSEditableTableCell;

    /// Ends editing itself rather than through the base, whose return key may come to do more.
    bool textFieldShouldReturn(platform::UITextField& field) override;
    void textFieldDidBeginEditing(platform::UITextField& field) override;
};

}  // namespace quietrix
