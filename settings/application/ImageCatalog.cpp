// SPDX-License-Identifier: MIT
#include "settings/application/ImageCatalog.h"

namespace settings {

std::string ImageCatalog::remember(const platform::UIImage& image) {
    const std::lock_guard lock(mutex_);
    paths_.insert_or_assign(image.name(), image.path());
    return image.name();
}

std::optional<std::string> ImageCatalog::imagePath(std::string_view name) const {
    const std::lock_guard lock(mutex_);
    const auto entry = paths_.find(name);
    if (entry == paths_.end()) return std::nullopt;
    return entry->second;
}

}  // namespace settings
