// SPDX-License-Identifier: MIT
#include "platform/uikit/UITableView.h"

#include <utility>

namespace platform {

PLATFORM_REGISTER_CLASS(UITableView)

bool UITableView::hasRow(IndexPath path) {
    return path.row >= 0 && path.row < numberOfRowsInSection(path.section);
}

std::int64_t UITableView::numberOfRowsInSection(std::int64_t section) {
    if (dataSource_ == nullptr) return 0;
    const auto self = shared(this);
    if (section < 0 || section >= dataSource_->numberOfSectionsInTableView(self)) return 0;
    return dataSource_->tableView_numberOfRowsInSection(self, section);
}

std::shared_ptr<UITableViewCell> UITableView::cellForRowAtIndexPath(IndexPath path) {
    if (lookup_) return lookup_(path);
    if (!hasRow(path)) return nullptr;
    if (const auto living = cells_.find(path); living != cells_.end()) return living->second;
    auto cell = dataSource_->tableView_cellForRowAtIndexPath(shared(this), path);
    if (cell) cells_.insert_or_assign(path, cell);
    return cell;
}

void UITableView::registerCell_forCellReuseIdentifier(CellMaker maker, std::string identifier) {
    makers_.insert_or_assign(std::move(identifier), std::move(maker));
}

std::shared_ptr<UITableViewCell> UITableView::dequeueReusableCellWithIdentifier_forIndexPath(
    std::string_view identifier, IndexPath /*path*/) const {
    const auto maker = makers_.find(identifier);
    return maker == makers_.end() || !maker->second ? nullptr : maker->second(maker->first);
}

void UITableView::reloadRowAtIndexPath_withRowAnimation(IndexPath path, std::int64_t /*animation*/) {
    cells_.erase(path);
    if (selected_ == path) selected_.reset();
}

void UITableView::selectRowAtIndexPath_animated_scrollPosition(IndexPath path, bool /*animated*/,
                                                               std::int64_t /*position*/) {
    selectRowAtIndexPath(path);
}

void UITableView::deselectRowAtIndexPath_animated(IndexPath path, bool /*animated*/) {
    if (selected_ == path) selected_.reset();
}

bool UITableView::userTappedRowAtIndexPath(IndexPath path) {
    if (!isUserInteractionEnabled() || !hasRow(path)) return false;
    // What the delegate does may take the table off the screen.
    const auto self = shared(this);
    selectRowAtIndexPath(path);
    if (delegate_ != nullptr) delegate_->tableView_didSelectRowAtIndexPath(self, path);
    return true;
}

}  // namespace platform
