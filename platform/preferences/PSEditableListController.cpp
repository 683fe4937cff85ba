// SPDX-License-Identifier: MIT
#include "platform/preferences/PSEditableListController.h"

#include "platform/uikit/UIBarButtonItem.h"

namespace platform {

PLATFORM_REGISTER_CLASS(PSEditableListController)

namespace {

constexpr const char* editSelector = "editButtonAction:";

}  // namespace

std::shared_ptr<UIBarButtonItem> PSEditableListController::_editButtonBarItem() {
    return std::make_shared<UIBarButtonItem>(
        isEditing() ? UIBarButtonSystemItemDone : UIBarButtonSystemItemEdit, shared(this),
        method(editSelector, &PSEditableListController::editButtonAction));
}

void PSEditableListController::editButtonAction(const std::shared_ptr<Object>& /*sender*/) {
    setEditing(!isEditing());
}

void PSEditableListController::setEditing(bool editing) {
    PSListController::setEditing(editing);
    if (showsOwnEditButton()) navigationItem()->setRightBarButtonItem_animated(_editButtonBarItem(), true);
}

bool PSEditableListController::showsOwnEditButton() {
    const auto& items = navigationItem()->rightBarButtonItems();
    return items.size() == 1 && items.front()->action().selector() == editSelector &&
           items.front()->target().get() == this;
}

void PSEditableListController::viewWillAppear(bool animated) {
    PSListController::viewWillAppear(animated);
    if (!navigationItem()->rightBarButtonItem()) {
        navigationItem()->setRightBarButtonItem_animated(_editButtonBarItem(), animated);
    }
}

void PSEditableListController::tableView_commitEditingStyle_forRowAtIndexPath(
    const std::shared_ptr<UITableView>& /*table*/, std::int64_t style, IndexPath path) {
    if (style != UITableViewCellEditingStyleDelete) return;
    const bool isSwiped = swipe_ && swipe_->path == path;
    const std::int64_t index =
        isSwiped ? indexOfKey(swipe_->row) : indexForRow_inGroup(path.row, path.section);
    if (isSwiped) swipe_.reset();
    if (!isSwiped || index >= 0) removeSpecifierAtIndex_animated(index, true);
    setEditing(false);
}

bool PSEditableListController::userDeletedRow(IndexPath path) {
    const std::int64_t index = indexForRow_inGroup(path.row, path.section);
    if (index < 0) return false;
    if (tableView_editingStyleForRowAtIndexPath(table(), path) != UITableViewCellEditingStyleDelete)
        return false;
    swipe_ = Swipe{path, keyAtIndex(index)};
    setEditing(true);
    tableView_commitEditingStyle_forRowAtIndexPath(table(), UITableViewCellEditingStyleDelete, path);
    return true;
}

}  // namespace platform
