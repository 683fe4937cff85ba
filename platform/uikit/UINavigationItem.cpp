// SPDX-License-Identifier: MIT
#include "platform/uikit/UINavigationItem.h"

#include <utility>

namespace platform {

PLATFORM_REGISTER_CLASS(UINavigationItem)

namespace {

UINavigationItem::Items oneSide(const std::shared_ptr<UIBarButtonItem>& item) {
    return item ? UINavigationItem::Items{item} : UINavigationItem::Items{};
}

}  // namespace

void UINavigationItem::setLeftBarButtonItem_animated(const std::shared_ptr<UIBarButtonItem>& item,
                                                     bool /*animated*/) {
    left_ = oneSide(item);
}

void UINavigationItem::setRightBarButtonItem_animated(const std::shared_ptr<UIBarButtonItem>& item,
                                                      bool /*animated*/) {
    right_ = oneSide(item);
}

void UINavigationItem::setRightBarButtonItems_animated(Items items, bool /*animated*/) {
    std::erase(items, nullptr);
    right_ = std::move(items);
}

}  // namespace platform
