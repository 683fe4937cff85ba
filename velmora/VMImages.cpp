// SPDX-License-Identifier: MIT
#include "velmora/VMImages.h"

namespace velmora {

using platform::UIImage;

namespace {

/// As large as the rows' other icons, in points.
constexpr platform::Size swatchSize{29, 29};

}  // namespace

std::shared_ptr<UIImage> qx_imageWithColor(const std::shared_ptr<platform::UIColor>& color) {
    return UIImage::imageFilledWithColor(color, swatchSize);
}

std::shared_ptr<UIImage> qx_imageWithRoundedCornersSize_usingImage(float cornerSize,
                                                                   const std::shared_ptr<UIImage>& image) {
    return image ? image->withCornerRadius(cornerSize) : nullptr;
}

}  // namespace velmora
