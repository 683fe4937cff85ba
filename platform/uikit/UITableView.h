// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/uikit/UITableViewCell.h"
#include "platform/uikit/UIView.h"

namespace platform {

class UITableView;

inline constexpr std::int64_t UITableViewStylePlain = 0;
inline constexpr std::int64_t UITableViewStyleGrouped = 1;
inline constexpr std::int64_t UITableViewScrollPositionNone = 0;
inline constexpr std::int64_t UITableViewRowAnimationNone = 5;

/// What a table that is nobody's list screen asks for its contents.
class UITableViewDataSource {
  public:
    virtual ~UITableViewDataSource() = default;

    virtual std::int64_t numberOfSectionsInTableView(const std::shared_ptr<UITableView>& table) = 0;
    virtual std::int64_t tableView_numberOfRowsInSection(const std::shared_ptr<UITableView>& table,
                                                         std::int64_t section) = 0;
    /// Called once for each row, and again after the row was reloaded.
    virtual std::shared_ptr<UITableViewCell> tableView_cellForRowAtIndexPath(
        const std::shared_ptr<UITableView>& table, IndexPath path) = 0;
};

/// What such a table tells of the user's moves.
class UITableViewDelegate {
  public:
    virtual ~UITableViewDelegate() = default;

    virtual void tableView_didSelectRowAtIndexPath(const std::shared_ptr<UITableView>& table,
                                                   IndexPath path) = 0;
};

/// A table. That of a list screen only passes questions on: the screen owns the rows and their cells and
/// answers by the lookup. Any other has a data source, and keeps the cells that it was given until their rows
/// are reloaded.
class UITableView : public UIView {
    PLATFORM_CLASS(UITableView, UIView)

  public:
    using CellLookup = std::function<std::shared_ptr<UITableViewCell>(IndexPath)>;
    using CellMaker = std::function<std::shared_ptr<UITableViewCell>(const std::string& reuseIdentifier)>;

    using UIView::UIView;
    UITableView(Rect frame, std::int64_t style) : UIView(frame), style_(style) {}

    std::int64_t style() const { return style_; }
    /// How a list screen answers cellForRowAtIndexPath; the function must not own the owner.
    void setCellLookup(CellLookup lookup) { lookup_ = std::move(lookup); }
    /// Both must outlive the table or take themselves away.
    void setDataSource(UITableViewDataSource* source) { dataSource_ = source; }
    void setDelegate(UITableViewDelegate* delegate) { delegate_ = delegate; }

    /// The row's living cell. A list screen's table: null when nobody has looked at the row. With a data
    /// source: made by it at the first question. Null where there is no such row.
    std::shared_ptr<UITableViewCell> cellForRowAtIndexPath(IndexPath path);
    /// 0 without a data source, and for a section that it does not have.
    std::int64_t numberOfRowsInSection(std::int64_t section);
    /// From then on dequeuing the identifier makes such cells.
    void registerCell_forCellReuseIdentifier(CellMaker maker, std::string identifier);
    /// A new cell of the registered kind; null for an identifier that nobody registered.
    std::shared_ptr<UITableViewCell> dequeueReusableCellWithIdentifier_forIndexPath(
        std::string_view identifier, IndexPath path) const;
    /// Drops the row's cell and its selection, as a reload does; the next look makes it anew.
    void reloadRowAtIndexPath_withRowAnimation(IndexPath path, std::int64_t animation);

    std::optional<IndexPath> indexPathForSelectedRow() const { return selected_; }
    void selectRowAtIndexPath(IndexPath path) { selected_ = path; }
    void selectRowAtIndexPath_animated_scrollPosition(IndexPath path, bool animated, std::int64_t position);
    void deselectRowAtIndexPath_animated(IndexPath path, bool animated);
    /// What the user's tap on a row does: selects it and tells the delegate. False, and nothing happens, for
    /// a row that is not there or a table that takes no touches.
    bool userTappedRowAtIndexPath(IndexPath path);

    double rowHeight() const { return rowHeight_; }
    void setRowHeight(double height) { rowHeight_ = height; }
    bool isScrollEnabled() const { return scrollEnabled_; }
    void setScrollEnabled(bool enabled) { scrollEnabled_ = enabled; }
    bool showsVerticalScrollIndicator() const { return showsVerticalScrollIndicator_; }
    void setShowsVerticalScrollIndicator(bool shows) { showsVerticalScrollIndicator_ = shows; }
    bool bounces() const { return bounces_; }
    void setBounces(bool bounces) { bounces_ = bounces; }
    Insets contentInset() const { return contentInset_; }
    void setContentInset(Insets inset) { contentInset_ = inset; }

  private:
    bool hasRow(IndexPath path);

    std::int64_t style_ = UITableViewStylePlain;
    CellLookup lookup_;
    UITableViewDataSource* dataSource_ = nullptr;
    UITableViewDelegate* delegate_ = nullptr;
    std::map<IndexPath, std::shared_ptr<UITableViewCell>> cells_;
    std::map<std::string, CellMaker, std::less<>> makers_;
    std::optional<IndexPath> selected_;
    double rowHeight_ = 44;
    bool scrollEnabled_ = true;
    bool showsVerticalScrollIndicator_ = true;
    bool bounces_ = true;
    Insets contentInset_;
};

}  // namespace platform
