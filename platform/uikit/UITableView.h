// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "platform/uikit/UITableViewCell.h"
#include "platform/uikit/UIView.h"

namespace platform {

/// The table of a list screen, as the screen's row methods get it. The screen owns the rows and their cells;
/// the table only passes questions on.
class UITableView : public UIView {
    PLATFORM_CLASS(UITableView, UIView)

  public:
    using CellLookup = std::function<std::shared_ptr<UITableViewCell>(IndexPath)>;

    using UIView::UIView;

    /// How the owner answers cellForRowAtIndexPath; the function must not own the owner.
    void setCellLookup(CellLookup lookup) { lookup_ = std::move(lookup); }
    /// The row's living cell; null when nobody has looked at the row or there is no such row.
    std::shared_ptr<UITableViewCell> cellForRowAtIndexPath(IndexPath path) const;
    std::optional<IndexPath> indexPathForSelectedRow() const { return selected_; }
    void selectRowAtIndexPath(IndexPath path) { selected_ = path; }
    void deselectRowAtIndexPath_animated(IndexPath path, bool animated);

  private:
    CellLookup lookup_;
    std::optional<IndexPath> selected_;
};

}  // namespace platform
