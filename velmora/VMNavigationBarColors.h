// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>

#include "platform/uikit/UIColor.h"
#include "platform/uikit/UINavigationController.h"

namespace velmora {

/// What the navigation bar and the status bar looked like before a screen put its own colours on them: the
/// screen's properties, filled with each appearance.
struct SavedBarColors {
    std::shared_ptr<platform::UIColor> prevTintcolor;
    std::shared_ptr<platform::UIColor> prevBarTintcolor;
    std::int64_t prevStatubarStyle = 0;
};

/// The outermost navigation controller around the screen, whose bar is the one seen; null when it is in none.
std::shared_ptr<platform::UINavigationController> outermostNavigationController(
    const platform::UIViewController& screen);

/// On appearing: saves the status-bar style and the bar's colours, then sets light content, white items and
/// the given ground (null: the platform's own). Main thread.
void applyBarColors(const platform::UIViewController& screen, std::shared_ptr<platform::UIColor> ground,
                    SavedBarColors& saved);

/// On disappearing: puts back what was saved.
void restoreBarColors(const platform::UIViewController& screen, const SavedBarColors& saved);

}  // namespace velmora
