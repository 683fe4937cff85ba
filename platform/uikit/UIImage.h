// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/foundation/Bundle.h"
#include "platform/foundation/Object.h"
#include "platform/uikit/Geometry.h"

namespace platform {

class UIColor;

/// A picture in a file (PNG), or an area of one colour. Never changes once made.
class UIImage : public Object {
    PLATFORM_CLASS(UIImage, Object)

  public:
    /// The image of that resource name at the best scale for the main screen: the screen's own ("@2x", "@3x",
    /// none for 1), else the nearest larger, else the largest smaller. Nil when the bundle has none.
    static std::shared_ptr<UIImage> imageNamed_inBundle(std::string_view name,
                                                        const std::shared_ptr<Bundle>& bundle);
    /// The very file at that phone path; its scale from an "@Nx" in its name. Nil when it is no readable PNG.
    static std::shared_ptr<UIImage> imageWithContentsOfFile(std::string_view path);

    /// An area of one colour. Nil for a nil colour.
    static std::shared_ptr<UIImage> imageFilledWithColor(const std::shared_ptr<UIColor>& color, Size size);
    /// This picture with its corners rounded by so many points.
    std::shared_ptr<UIImage> withCornerRadius(double radius) const;

    /// The resource name; for an image loaded by path, the file's name without its extension.
    const std::string& name() const { return name_; }
    /// The file's path on the phone.
    const std::string& path() const { return path_; }
    double scale() const { return scale_; }
    /// In points: the pixels divided by the scale.
    Size size() const { return size_; }
    /// The colour of an area of one colour; null for a picture in a file.
    const std::shared_ptr<UIColor>& fillColor() const { return fillColor_; }
    double cornerRadius() const { return cornerRadius_; }

  private:
    std::string name_;
    std::string path_;
    double scale_ = 1;
    Size size_;
    std::shared_ptr<UIColor> fillColor_;
    double cornerRadius_ = 0;
};

}  // namespace platform
