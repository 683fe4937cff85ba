// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string_view>

#include "platform/foundation/Bundle.h"
#include "platform/uikit/UIImage.h"

namespace quietrix {

/// The image of that name from the bundle that the class belongs to; null when it has none. Main thread.
inline std::shared_ptr<platform::UIImage> bundleImage(const platform::Class& cls, std::string_view name) {
    return platform::UIImage::imageNamed_inBundle(name, platform::Bundle::bundleForClass(cls));
}

}  // namespace quietrix
