// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "platform/uikit/UIImage.h"

namespace settings {

/// The images that states have named, so that their files can be found by that name. Of two images of one
/// name the later one stands. Any thread.
class ImageCatalog {
  public:
    /// Gives the name by which the image is known from now on.
    std::string remember(const platform::UIImage& image);
    /// The file's path on the phone; empty for a name that no state has held.
    std::optional<std::string> imagePath(std::string_view name) const;

  private:
    mutable std::mutex mutex_;
    std::map<std::string, std::string, std::less<>> paths_;
};

}  // namespace settings
