// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "platform/preferences/PSListController.h"
#include "platform/uikit/UINavigationController.h"

namespace settings {

/// The screen that the user has before him just now, with what is presented above it and the navigation that
/// it stands in. Holds what it names, so it is asked for anew with each use and never kept. Main thread.
struct TopScreen {
    /// The topmost navigation controller; null before the window has one.
    std::shared_ptr<platform::UINavigationController> navigation;
    /// The screen on top of its stack; null when the stack is empty.
    std::shared_ptr<platform::UIViewController> screen;
    /// The alert, sheet or composer above it; null when there is none.
    std::shared_ptr<platform::UIViewController> presented;
    /// How many of the navigation controllers are presented ones.
    std::size_t modals = 0;

    static TopScreen now();
    /// The screen as a list of rows; null for a screen of another kind.
    std::shared_ptr<platform::PSListController> list() const;
};

/// Every screen on the stacks of all navigation controllers, those that are covered included.
std::vector<std::shared_ptr<platform::UIViewController>> shownScreens();
/// The lists among them.
std::vector<std::shared_ptr<platform::PSListController>> shownLists();

}  // namespace settings
