// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/uikit/UIBarButtonItem.h"
#include "platform/uikit/UIView.h"

namespace platform {

/// What a screen puts into the navigation bar. The first item of a side stands outermost.
class UINavigationItem : public Object {
    PLATFORM_CLASS(UINavigationItem, Object)

  public:
    using Items = std::vector<std::shared_ptr<UIBarButtonItem>>;

    const std::optional<std::string>& title() const { return title_; }
    void setTitle(std::optional<std::string> title) { title_ = std::move(title); }
    const std::shared_ptr<UIView>& titleView() const { return titleView_; }
    void setTitleView(std::shared_ptr<UIView> view) { titleView_ = std::move(view); }

    const Items& leftBarButtonItems() const { return left_; }
    const Items& rightBarButtonItems() const { return right_; }
    std::shared_ptr<UIBarButtonItem> rightBarButtonItem() const {
        return right_.empty() ? nullptr : right_.front();
    }
    /// A single item replaces all of its side; null clears the side. Null entries of a list are left out.
    void setLeftBarButtonItem_animated(const std::shared_ptr<UIBarButtonItem>& item, bool animated);
    void setRightBarButtonItem_animated(const std::shared_ptr<UIBarButtonItem>& item, bool animated);
    void setRightBarButtonItems_animated(Items items, bool animated);

    /// Shown on the back button of the screen that is pushed above this one; its action is never sent.
    const std::shared_ptr<UIBarButtonItem>& backBarButtonItem() const { return back_; }
    void setBackBarButtonItem(std::shared_ptr<UIBarButtonItem> item) { back_ = std::move(item); }

  private:
    std::optional<std::string> title_;
    std::shared_ptr<UIView> titleView_;
    Items left_;
    Items right_;
    std::shared_ptr<UIBarButtonItem> back_;
};

}  // namespace platform
