// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "platform/foundation/Object.h"
#include "platform/uikit/Geometry.h"
#include "platform/uikit/UIColor.h"

namespace platform {

inline constexpr std::uint64_t UIViewAutoresizingFlexibleWidth = 2;

/// A rectangle on the screen that holds others. A view holds its subviews strongly and knows its superview
/// weakly. Main thread, like every class of this folder.
class UIView : public Object {
    PLATFORM_CLASS(UIView, Object)

  public:
    /// How an animated change of the alpha is to be shown.
    struct Fade {
        /// The alpha before the change.
        double from = 1;
        double seconds = 0;

        bool operator==(const Fade&) const = default;
    };

    UIView() = default;
    explicit UIView(Rect frame) : frame_(frame) {}
    ~UIView() override;

    Rect frame() const { return frame_; }
    /// A change of width stretches the subviews of flexible width; a change of size asks for a layout.
    void setFrame(Rect frame);
    /// The frame moved to the origin.
    Rect bounds() const { return {0, 0, frame_.width, frame_.height}; }
    std::int64_t tag() const { return tag_; }
    void setTag(std::int64_t tag) { tag_ = tag; }
    double alpha() const { return alpha_; }
    /// Takes the alpha at once, inside an animation too: `fade` then says how what is shown gets there.
    void setAlpha(double alpha);
    /// Of the latest `setAlpha`; empty when that was not animated or changed nothing.
    const std::optional<Fade>& fade() const { return fade_; }
    bool isHidden() const { return hidden_; }
    void setHidden(bool hidden) { hidden_ = hidden; }
    bool isUserInteractionEnabled() const { return userInteractionEnabled_; }
    void setUserInteractionEnabled(bool enabled) { userInteractionEnabled_ = enabled; }
    const std::shared_ptr<UIColor>& backgroundColor() const { return backgroundColor_; }
    virtual void setBackgroundColor(std::shared_ptr<UIColor> color) { backgroundColor_ = std::move(color); }
    const std::shared_ptr<UIColor>& tintColor() const { return tintColor_; }
    virtual void setTintColor(std::shared_ptr<UIColor> color) { tintColor_ = std::move(color); }
    std::uint64_t autoresizingMask() const { return autoresizingMask_; }
    void setAutoresizingMask(std::uint64_t mask) { autoresizingMask_ = mask; }

    const std::vector<std::shared_ptr<UIView>>& subviews() const { return subviews_; }
    /// Null while the superview is still being made, or is being destroyed.
    std::shared_ptr<UIView> superview() const;
    /// Takes the view from its old superview and puts it in front. Null, and a view that holds this one, are
    /// ignored. Constructors may call it.
    void addSubview(const std::shared_ptr<UIView>& view);
    void removeFromSuperview();
    void sendSubviewToBack(const std::shared_ptr<UIView>& view);
    /// This view or the first one beneath it, depth first, with the tag; null when there is none.
    std::shared_ptr<UIView> viewWithTag(std::int64_t tag);

    void setNeedsLayout() { needsLayout_ = true; }
    /// Calls layoutSubviews when a layout was asked for (a new view asks for one), then that of the subviews.
    void layoutIfNeeded();
    /// Places the subviews for the present size. The base leaves them where they are.
    virtual void layoutSubviews() {}
    virtual void sizeToFit() {}

    /// Runs the changes at once: what is shown moves there over the seconds, of which changes of the alpha
    /// keep a record (`fade`). Without seconds nothing is animated; an empty function does nothing.
    static void animateWithDuration_animations(double seconds, const std::function<void()>& animations);

  private:
    Rect frame_;
    std::int64_t tag_ = 0;
    double alpha_ = 1;
    std::optional<Fade> fade_;
    bool hidden_ = false;
    bool userInteractionEnabled_ = true;
    bool needsLayout_ = true;
    std::uint64_t autoresizingMask_ = 0;
    std::shared_ptr<UIColor> backgroundColor_;
    std::shared_ptr<UIColor> tintColor_;
    std::vector<std::shared_ptr<UIView>> subviews_;
    // A plain pointer, because a view takes its first subviews while it is constructed and nobody owns it
    // yet; the superview's destructor clears it.
    UIView* superview_ = nullptr;
};

}  // namespace platform
