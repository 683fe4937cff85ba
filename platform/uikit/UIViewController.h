// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/foundation/Object.h"
#include "platform/uikit/UINavigationItem.h"
#include "platform/uikit/UIView.h"

namespace platform {

class UINavigationController;

/// A screen. Its view is made on first use: loadView, then viewDidLoad. Navigation controllers hold the
/// screens on their stack, a presenting screen holds what it presents; links in the other directions are
/// weak.
class UIViewController : public Object {
    PLATFORM_CLASS(UIViewController, Object)

  public:
    using Completion = std::function<void()>;

    /// Tells this screen from every other one of the process, those that come after it included.
    std::uint64_t number() const { return number_; }
    /// Gives the screen the number of one of another process whose place it takes.
    void takeOverNumber(std::uint64_t number) { number_ = number; }
    /// The highest number so far of all screens of the process; 0 before the first one.
    static std::uint64_t lastNumber();
    /// Screens made from now on have higher numbers than this one.
    static void numberAbove(std::uint64_t number);

    /// The view, made if need be. Never null.
    const std::shared_ptr<UIView>& view();
    bool isViewLoaded() const { return static_cast<bool>(view_); }
    void setView(std::shared_ptr<UIView> view) { view_ = std::move(view); }
    /// The base makes an empty view of the main screen's size.
    virtual void loadView();
    virtual void viewDidLoad() {}
    virtual void viewWillAppear(bool animated);
    virtual void viewWillDisappear(bool animated);

    /// Subclasses may answer their own; the base what was set.
    virtual std::optional<std::string> title() const { return title_; }
    void setTitle(std::optional<std::string> title) { title_ = std::move(title); }
    const std::shared_ptr<UINavigationItem>& navigationItem();
    virtual bool isEditing() const { return editing_; }
    virtual void setEditing(bool editing) { editing_ = editing; }

    /// The nearest navigation controller that holds this screen on its stack; null without one.
    std::shared_ptr<UINavigationController> navigationController() const;
    std::shared_ptr<UIViewController> parentViewController() const { return parent_.lock(); }
    void setParentViewController(const std::shared_ptr<UIViewController>& parent) { parent_ = parent; }

    /// What this screen, or the nearest ancestor that does, presents directly; null when nothing is
    /// presented, and while the handler of an alert runs that this screen, an ancestor or a screen it holds
    /// had asked for: what the handler means is gone.
    std::shared_ptr<UIViewController> presentedViewController() const;
    std::shared_ptr<UIViewController> presentingViewController() const { return presenting_.lock(); }
    /// Shows the screen above everything that is shown already. A full screen (a navigation controller) makes
    /// the covered screen disappear, which reappears when the full screen is dismissed; alerts, sheets and
    /// composers do not. Presenting null, or what is presented or held by another already, does nothing, its
    /// completion included, and is logged.
    void presentViewController_animated_completion(const std::shared_ptr<UIViewController>& screen,
                                                   bool animated, const Completion& completion);
    /// Dismisses what this screen (or an ancestor) presents, with everything above it; when that is nothing
    /// and the screen is presented itself, dismisses the screen. When neither holds, and while the handler of
    /// an alert runs for the alert that this screen presented (it is gone already), nothing happens. The
    /// completion runs in every case.
    void dismissViewControllerAnimated_completion(bool animated, const Completion& completion);

    /// Whether this screen covers what is beneath it when presented.
    virtual bool isFullScreen() const { return false; }
    /// Sends viewWillAppear or viewWillDisappear once for each change, making the view first. A screen that
    /// is there already is not sent it again.
    void beginAppearanceTransition(bool appears, bool animated);
    bool isVisible() const { return visible_; }

  protected:
    /// Dismisses this screen itself with everything above it, for what the user's own press ends (alerts,
    /// composers). False, and nothing happens, when it is not presented.
    bool dismissItself(bool animated);

  private:
    friend class UIAlertController;
    friend class UIApplication;

    enum class Uncover { Yes, No };
    /// Takes away everything that this screen holds presented, topmost first; what a full screen covered
    /// appears again unless it is about to leave itself.
    void removePresented(bool animated, Uncover uncover);
    /// This screen, or what holds it in the end; empty for a screen that nobody owns (any more).
    std::shared_ptr<UIViewController> outermostParent();
    /// The nearest full screen at or beneath this one, which shows through alerts.
    std::shared_ptr<UIViewController> shownBeneath();
    bool isPresented() const;
    /// Whether one of the two is the other or holds it on its stack, at whatever depth.
    static bool areRelated(const UIViewController& one, const UIViewController& other);
    /// Whether an alert's handler runs that this screen or a related one had asked for.
    bool handlesOwnAlert() const;

    static std::uint64_t nextNumber();

    std::uint64_t number_ = nextNumber();
    std::shared_ptr<UIView> view_;
    std::optional<std::string> title_;
    std::shared_ptr<UINavigationItem> navigationItem_;
    std::weak_ptr<UIViewController> parent_;
    std::shared_ptr<UIViewController> presented_;
    std::weak_ptr<UIViewController> presenting_;
    /// Who asked for this screen to be presented; may differ from the one that holds it.
    std::weak_ptr<UIViewController> asker_;
    bool editing_ = false;
    bool visible_ = false;
    /// Whether presenting this full screen made a visible one disappear, which has to come back.
    bool coversVisible_ = false;
};

}  // namespace platform
