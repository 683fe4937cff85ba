// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "platform/foundation/Class.h"
#include "platform/uikit/UIColor.h"
#include "platform/uikit/UIImage.h"

namespace quietrix {

/// The image whose pattern is the product's bar and accent colour, from the class's bundle: the file
/// "nav.png", else the image named "nav"; null when there is neither. Main thread.
std::shared_ptr<platform::UIImage> getNavBarColorImage(const platform::Class& cls);

/// That image as a pattern colour; null without the image.
std::shared_ptr<platform::UIColor> navBarPatternColor(const platform::Class& cls);

}  // namespace quietrix
