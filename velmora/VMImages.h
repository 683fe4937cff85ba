// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "platform/uikit/UIColor.h"

namespace velmora {

/// A small square of the colour, for a row's icon. Null for a null colour.
std::shared_ptr<platform::UIImage> qx_imageWithColor(const std::shared_ptr<platform::UIColor>& color);

/// The image with its corners rounded by so many points. Null for a null image.
std::shared_ptr<platform::UIImage> qx_imageWithRoundedCornersSize_usingImage(
    float cornerSize, const std::shared_ptr<platform::UIImage>& image);

}  // namespace velmora
