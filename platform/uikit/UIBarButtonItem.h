// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/foundation/Method.h"
#include "platform/uikit/UIImage.h"

namespace platform {

inline constexpr std::int64_t UIBarButtonItemStylePlain = 0;
inline constexpr std::int64_t UIBarButtonItemStyleDone = 2;

inline constexpr std::int64_t UIBarButtonSystemItemDone = 0;
inline constexpr std::int64_t UIBarButtonSystemItemCancel = 1;
inline constexpr std::int64_t UIBarButtonSystemItemEdit = 2;
inline constexpr std::int64_t UIBarButtonSystemItemSave = 3;
inline constexpr std::int64_t UIBarButtonSystemItemAdd = 4;

/// A button in a navigation bar: a title, an image, or one of the system's own items. Its target is held
/// weakly.
class UIBarButtonItem : public Object {
    PLATFORM_CLASS(UIBarButtonItem, Object)

  public:
    /// The action's argument is the button.
    using Action = Method<void(const std::shared_ptr<Object>&)>;

    UIBarButtonItem() = default;
    UIBarButtonItem(std::string title, std::int64_t style, const std::shared_ptr<Object>& target,
                    Action action);
    UIBarButtonItem(std::shared_ptr<UIImage> image, std::int64_t style, const std::shared_ptr<Object>& target,
                    Action action);
    UIBarButtonItem(std::int64_t systemItem, const std::shared_ptr<Object>& target, Action action);

    const std::optional<std::string>& title() const { return title_; }
    const std::shared_ptr<UIImage>& image() const { return image_; }
    std::optional<std::int64_t> systemItem() const { return systemItem_; }
    std::int64_t style() const { return style_; }
    const Action& action() const { return action_; }
    std::shared_ptr<Object> target() const { return target_.lock(); }
    /// What the user's press does; nothing when the target is gone.
    void press();

  private:
    std::optional<std::string> title_;
    std::shared_ptr<UIImage> image_;
    std::optional<std::int64_t> systemItem_;
    std::int64_t style_ = UIBarButtonItemStylePlain;
    std::weak_ptr<Object> target_;
    Action action_;
};

}  // namespace platform
