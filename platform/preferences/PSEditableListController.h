// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "platform/preferences/PSListController.h"

namespace platform {

/// A list screen whose rows can be deleted, with an edit button in its bar.
class PSEditableListController : public PSListController {
    PLATFORM_CLASS(PSEditableListController, PSListController)

  public:
    /// The button that switches editing on and off; a fresh one at each call.
    virtual std::shared_ptr<UIBarButtonItem> _editButtonBarItem();
    void editButtonAction(const std::shared_ptr<Object>& sender);
    /// The screen's own edit button shows "Done" while editing.
    void setEditing(bool editing) override;
    /// Puts the edit button at the right when the right side is empty.
    void viewWillAppear(bool animated) override;
    /// Deleting removes the row, animated, and leaves editing mode; other styles do nothing. With the path of
    /// the last swipe the row is the one that the path meant when the swipe began, however late the call
    /// comes and wherever that row stands by then; one that has left meanwhile takes no other with it.
    void tableView_commitEditingStyle_forRowAtIndexPath(const std::shared_ptr<UITableView>& table,
                                                        std::int64_t style, IndexPath path) override;
    /// What the user's swipe over a row with the delete style does: editing mode begins, as it does on the
    /// phone for a swipe too, and the delete button's press commits. False when the row cannot be deleted.
    bool userDeletedRow(IndexPath path);

  private:
    struct Swipe {
        IndexPath path;
        RowKey row;
    };
    bool showsOwnEditButton();

    /// From the swipe's beginning until its row is deleted or another swipe begins.
    std::optional<Swipe> swipe_;
};

}  // namespace platform
