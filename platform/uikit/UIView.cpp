// SPDX-License-Identifier: MIT
#include "platform/uikit/UIView.h"

#include <algorithm>
#include <utility>

namespace platform {

PLATFORM_REGISTER_CLASS(UIView)

namespace {

/// Of the animation whose changes are being made; 0 outside of any.
double animationSeconds = 0;

}  // namespace

UIView::~UIView() {
    for (const auto& view : subviews_) view->superview_ = nullptr;
}

void UIView::setFrame(Rect frame) {
    const double wider = frame.width - frame_.width;
    const bool resized = frame.width != frame_.width || frame.height != frame_.height;
    frame_ = frame;
    if (!resized) return;
    for (const auto& view : subviews_) {
        if ((view->autoresizingMask_ & UIViewAutoresizingFlexibleWidth) == 0) continue;
        Rect stretched = view->frame_;
        stretched.width = std::max(0.0, stretched.width + wider);
        view->setFrame(stretched);
    }
    setNeedsLayout();
}

void UIView::setAlpha(double alpha) {
    fade_.reset();
    if (animationSeconds > 0 && alpha != alpha_) fade_ = Fade{alpha_, animationSeconds};
    alpha_ = alpha;
}

std::shared_ptr<UIView> UIView::superview() const {
    return superview_ == nullptr ? nullptr : superview_->shared(superview_);
}

void UIView::addSubview(const std::shared_ptr<UIView>& view) {
    if (!view) return;
    for (const UIView* holder = this; holder != nullptr; holder = holder->superview_) {
        if (holder == view.get()) return;
    }
    // A copy, because the argument may be an entry of the very list it is taken from.
    const std::shared_ptr<UIView> added = view;
    added->removeFromSuperview();
    subviews_.push_back(added);
    added->superview_ = this;
    setNeedsLayout();
}

void UIView::removeFromSuperview() {
    if (superview_ == nullptr) return;
    auto& siblings = superview_->subviews_;
    superview_ = nullptr;
    const auto place = std::ranges::find(siblings, this, &std::shared_ptr<UIView>::get);
    if (place == siblings.end()) return;
    const std::shared_ptr<UIView> kept = *place;
    siblings.erase(place);
}

void UIView::sendSubviewToBack(const std::shared_ptr<UIView>& view) {
    const auto place = std::ranges::find(subviews_, view);
    if (place != subviews_.end()) std::rotate(subviews_.begin(), place, place + 1);
}

std::shared_ptr<UIView> UIView::viewWithTag(std::int64_t tag) {
    if (tag_ == tag) return shared(this);
    for (const auto& view : subviews_) {
        if (auto found = view->viewWithTag(tag)) return found;
    }
    return nullptr;
}

void UIView::layoutIfNeeded() {
    if (needsLayout_) {
        // Cleared first: a layout that asks for another one gets it at the next call.
        needsLayout_ = false;
        layoutSubviews();
    }
    const auto views = subviews_;
    for (const auto& view : views) view->layoutIfNeeded();
}

void UIView::animateWithDuration_animations(double seconds, const std::function<void()>& animations) {
    if (!animations) return;
    const double outer = std::exchange(animationSeconds, seconds);
    animations();
    animationSeconds = outer;
}

}  // namespace platform
