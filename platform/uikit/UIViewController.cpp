// SPDX-License-Identifier: MIT
#include "platform/uikit/UIViewController.h"

#include <atomic>
#include <utility>
#include <vector>

#include "platform/foundation/Journal.h"
#include "platform/foundation/LogSink.h"
#include "platform/uikit/UIAlertController.h"
#include "platform/uikit/UIApplication.h"
#include "platform/uikit/UIDevice.h"
#include "platform/uikit/UINavigationController.h"

namespace platform {

PLATFORM_REGISTER_CLASS(UIViewController)

namespace {

std::atomic<std::uint64_t> lastScreen{0};

}  // namespace

std::uint64_t UIViewController::nextNumber() {
    return ++lastScreen;
}

std::uint64_t UIViewController::lastNumber() {
    return lastScreen;
}

void UIViewController::numberAbove(std::uint64_t number) {
    std::uint64_t last = lastScreen;
    while (last < number && !lastScreen.compare_exchange_weak(last, number)) continue;
}

const std::shared_ptr<UIView>& UIViewController::view() {
    if (!view_) {
        loadView();
        if (!view_) UIViewController::loadView();
        viewDidLoad();
    }
    return view_;
}

void UIViewController::loadView() {
    setView(std::make_shared<UIView>(UIScreen::mainScreen().bounds()));
}

void UIViewController::viewWillAppear(bool /*animated*/) {}

void UIViewController::viewWillDisappear(bool /*animated*/) {}

const std::shared_ptr<UINavigationItem>& UIViewController::navigationItem() {
    if (!navigationItem_) navigationItem_ = std::make_shared<UINavigationItem>();
    return navigationItem_;
}

std::shared_ptr<UINavigationController> UIViewController::navigationController() const {
    for (auto holder = parent_.lock(); holder; holder = holder->parent_.lock()) {
        if (auto navigation = std::dynamic_pointer_cast<UINavigationController>(holder)) return navigation;
    }
    return nullptr;
}

std::shared_ptr<UIViewController> UIViewController::presentedViewController() const {
    if (handlesOwnAlert()) return nullptr;
    if (presented_) return presented_;
    for (auto holder = parent_.lock(); holder; holder = holder->parent_.lock()) {
        if (holder->presented_) return holder->presented_;
    }
    return nullptr;
}

void UIViewController::presentViewController_animated_completion(
    const std::shared_ptr<UIViewController>& screen, bool animated, const Completion& completion) {
    if (!screen) {
        log(getClass().name() + ": there is no screen to present.");
        return;
    }
    auto holder = outermostParent();
    if (!holder) return;
    const bool isHeld = screen->parentViewController() || screen == holder ||
                        screen == UIApplication::sharedApplication().rootViewController();
    if (screen->isPresented() || isHeld) {
        log(getClass().name() + ": the screen " + screen->getClass().name() + " is shown already.");
        return;
    }
    while (holder->presented_) holder = holder->presented_;
    const Journal::Course course("present", {{"class", screen->getClass().name()}});
    holder->presented_ = screen;
    screen->presenting_ = holder;
    screen->asker_ = weak(this);
    screen->view();
    if (screen->isFullScreen()) {
        const auto covered = holder->shownBeneath();
        screen->coversVisible_ = covered->visible_;
        covered->beginAppearanceTransition(false, animated);
    }
    screen->beginAppearanceTransition(true, animated);
    if (completion) completion();
}

void UIViewController::dismissViewControllerAnimated_completion(bool animated, const Completion& completion) {
    if (!handlesOwnAlert()) {
        const auto outermost = outermostParent();
        auto holder = shared(this);
        while (holder && !holder->presented_) holder = holder->parentViewController();
        if (holder) {
            holder->removePresented(animated, Uncover::Yes);
        } else if (outermost) {
            outermost->dismissItself(animated);
        }
    }
    if (completion) completion();
}

bool UIViewController::dismissItself(bool animated) {
    if (!isPresented()) return false;
    presenting_.lock()->removePresented(animated, Uncover::Yes);
    return true;
}

void UIViewController::removePresented(bool animated, Uncover uncover) {
    const auto self = shared(this);
    std::vector<std::shared_ptr<UIViewController>> leaving;
    // Out of the chain before anybody is told: a leaving screen that dismisses itself once more finds nothing
    // to do.
    for (auto next = std::exchange(presented_, nullptr); next;
         next = std::exchange(leaving.back()->presented_, nullptr)) {
        leaving.push_back(next);
    }
    bool uncovers = false;
    for (auto screen = leaving.rbegin(); screen != leaving.rend(); ++screen) {
        const Journal::Course course("dismiss", {{"class", (*screen)->getClass().name()}});
        (*screen)->beginAppearanceTransition(false, animated);
        // The last one asked is the lowest: what it covers is the screen that stays.
        if ((*screen)->isFullScreen()) uncovers = std::exchange((*screen)->coversVisible_, false);
        (*screen)->presenting_.reset();
        (*screen)->asker_.reset();
    }
    if (uncovers && uncover == Uncover::Yes) shownBeneath()->beginAppearanceTransition(true, animated);
}

void UIViewController::beginAppearanceTransition(bool appears, bool animated) {
    if (visible_ == appears) return;
    const auto self = shared(this);
    view();
    visible_ = appears;
    if (appears) {
        viewWillAppear(animated);
    } else {
        viewWillDisappear(animated);
    }
}

std::shared_ptr<UIViewController> UIViewController::outermostParent() {
    auto outermost = shared(this);
    for (auto next = outermost; next; next = next->parentViewController()) outermost = next;
    return outermost;
}

std::shared_ptr<UIViewController> UIViewController::shownBeneath() {
    auto shown = shared(this);
    while (!shown->isFullScreen()) {
        auto beneath = shown->presentingViewController();
        if (!beneath) break;
        shown = beneath;
    }
    return shown;
}

bool UIViewController::isPresented() const {
    const auto holder = presenting_.lock();
    return holder && holder->presented_.get() == this;
}

bool UIViewController::areRelated(const UIViewController& one, const UIViewController& other) {
    const auto holds = [](const UIViewController& holder, const UIViewController& held) {
        if (&holder == &held) return true;
        for (auto parent = held.parentViewController(); parent; parent = parent->parentViewController()) {
            if (parent.get() == &holder) return true;
        }
        return false;
    };
    return holds(one, other) || holds(other, one);
}

bool UIViewController::handlesOwnAlert() const {
    return UIAlertController::handling_ != nullptr && areRelated(*this, *UIAlertController::handling_);
}

}  // namespace platform
