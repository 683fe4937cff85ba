// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/uikit/UIViewController.h"

namespace platform {

inline constexpr std::int64_t UIAlertControllerStyleActionSheet = 0;
inline constexpr std::int64_t UIAlertControllerStyleAlert = 1;

inline constexpr std::int64_t UIAlertActionStyleDefault = 0;
inline constexpr std::int64_t UIAlertActionStyleCancel = 1;
inline constexpr std::int64_t UIAlertActionStyleDestructive = 2;

/// A button of an alert or sheet.
struct UIAlertAction {
    std::string title;
    std::int64_t style = UIAlertActionStyleDefault;
    /// May be empty. Holds what it needs weakly, or it keeps the screen alive as long as the alert is shown.
    std::function<void()> handler;
};

/// An alert or action sheet.
class UIAlertController : public UIViewController {
    PLATFORM_CLASS(UIAlertController, UIViewController)

  public:
    UIAlertController() = default;
    UIAlertController(std::optional<std::string> title, std::optional<std::string> message,
                      std::int64_t style);

    std::optional<std::string> title() const override { return alertTitle_; }
    const std::optional<std::string>& message() const { return message_; }
    std::int64_t preferredStyle() const { return style_; }
    const std::vector<UIAlertAction>& actions() const { return actions_; }
    void addAction(UIAlertAction action) { actions_.push_back(std::move(action)); }

    /// What the user's press on the button does: the alert is dismissed first, then the handler runs. An
    /// index out of range does nothing, and so does a press on an alert that is not shown (any more).
    void choose(std::size_t index);
    /// Takes the alert away without a press, with what is shown above it. Nothing happens when it is not
    /// shown (any more).
    void dismiss() { dismissItself(true); }

  private:
    friend class UIViewController;
    /// The screen that had asked for the alert whose handler runs just now; null outside of handlers.
    static const UIViewController* handling_;

    std::optional<std::string> alertTitle_;
    std::optional<std::string> message_;
    std::int64_t style_ = UIAlertControllerStyleAlert;
    std::vector<UIAlertAction> actions_;
};

}  // namespace platform
