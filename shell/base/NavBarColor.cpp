// SPDX-License-Identifier: MIT
#include "shell/base/NavBarColor.h"

#include "shell/base/BundleImage.h"

namespace quietrix {

std::shared_ptr<platform::UIImage> getNavBarColorImage(const platform::Class& cls) {
    const auto bundle = platform::Bundle::bundleForClass(cls);
    if (auto image =
            platform::UIImage::imageWithContentsOfFile(bundle->pathForResource_ofType("nav", "png"))) {
        return image;
    }
    return bundleImage(cls, "nav");
}

std::shared_ptr<platform::UIColor> navBarPatternColor(const platform::Class& cls) {
    return platform::UIColor::colorWithPatternImage(getNavBarColorImage(cls));
}

}  // namespace quietrix
