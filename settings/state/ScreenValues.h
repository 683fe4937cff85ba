// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "platform/foundation/Value.h"
#include "platform/preferences/PSSpecifier.h"
#include "platform/uikit/Geometry.h"
#include "platform/uikit/UIBarButtonItem.h"
#include "platform/uikit/UIColor.h"
#include "platform/uikit/UIImage.h"
#include "settings/application/ImageCatalog.h"

namespace settings {

/// How the phone's objects look in a state: as plain values. Every image named here is remembered in the
/// catalog, which must outlive this. Main thread.
class ScreenValues {
  public:
    explicit ScreenValues(ImageCatalog& images) : images_(images) {}

    /// "#rrggbbaa", {"pattern", "alpha"}, or nil.
    platform::Value colour(const std::shared_ptr<platform::UIColor>& colour) const;
    /// The image's name, or nil.
    platform::Value image(const std::shared_ptr<platform::UIImage>& image) const;
    /// [x, y, width, height].
    static platform::Value frame(platform::Rect frame);
    /// A property of a row: images as names, colours as swatches, other objects as their class.
    platform::Value property(const platform::Value& property) const;
    /// A row's user info: class and identifier of an object, the keys of a dictionary, else nil.
    static platform::Value userInfo(const platform::Value& userInfo);
    /// The row that opened a screen: name, identifier, user info; nil for null.
    static platform::Value specifier(const std::shared_ptr<platform::PSSpecifier>& specifier);
    platform::Value barItem(const platform::UIBarButtonItem& item) const;

    /// The text, or nil when there is none.
    static platform::Value text(const std::optional<std::string>& text);
    /// The text, or nil for "".
    static platform::Value textUnlessEmpty(const std::string& text);

  private:
    ImageCatalog& images_;
};

}  // namespace settings
