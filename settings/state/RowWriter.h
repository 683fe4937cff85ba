// SPDX-License-Identifier: MIT
#pragma once

#include "platform/preferences/PSListController.h"
#include "settings/state/ScreenValues.h"

namespace settings {

/// Writes rows of a list screen as they stand in a state. Looking at a row makes its cell. Main thread.
class RowWriter {
  public:
    /// Both must outlive this.
    RowWriter(const ScreenValues& values, platform::PSListController& list) : values_(values), list_(list) {}

    /// The row of that index of the row list; nil out of range.
    platform::Value row(std::int64_t index) const;

  private:
    void writeSpecifier(platform::PSSpecifier& specifier, platform::Dictionary& row) const;
    void writeCell(platform::PSTableCell& cell, platform::Dictionary& row) const;
    platform::Value headerCell(const platform::PSTableCell& cell) const;
    /// The labels that the cell has beside its text and detail text, at any depth.
    void collectLabels(const platform::PSTableCell& cell, const platform::UIView& view,
                       platform::Array& labels) const;

    const ScreenValues& values_;
    platform::PSListController& list_;
};

}  // namespace settings
