// SPDX-License-Identifier: MIT
#include "platform/uikit/UIImageView.h"

namespace platform {

PLATFORM_REGISTER_CLASS(UIImageView)

UIImageView::UIImageView(std::shared_ptr<UIImage> image)
    : UIView(image ? Rect{0, 0, image->size().width, image->size().height} : Rect{}),
      image_(std::move(image)) {}

}  // namespace platform
