// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UIImage.h"
#include "platform/uikit/UIView.h"

namespace platform {

/// Shows an image, or nothing.
class UIImageView : public UIView {
    PLATFORM_CLASS(UIImageView, UIView)

  public:
    UIImageView() = default;
    /// Takes the image's size as its frame's.
    explicit UIImageView(std::shared_ptr<UIImage> image);

    const std::shared_ptr<UIImage>& image() const { return image_; }
    void setImage(std::shared_ptr<UIImage> image) { image_ = std::move(image); }

  private:
    std::shared_ptr<UIImage> image_;
};

}  // namespace platform
