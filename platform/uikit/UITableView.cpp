// SPDX-License-Identifier: MIT
#include "platform/uikit/UITableView.h"

namespace platform {

PLATFORM_REGISTER_CLASS(UITableView)

std::shared_ptr<UITableViewCell> UITableView::cellForRowAtIndexPath(IndexPath path) const {
    return lookup_ ? lookup_(path) : nullptr;
}

void UITableView::deselectRowAtIndexPath_animated(IndexPath path, bool /*animated*/) {
    if (selected_ == path) selected_.reset();
}

}  // namespace platform
