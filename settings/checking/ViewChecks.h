// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "platform/preferences/PSListController.h"
#include "settings/checking/Finding.h"

namespace settings {

/// The least width and height of what a finger has to meet, in points.
inline constexpr double smallestTarget = 44;

/// How findings name a screen: by its class, and where that is the framework's detail screen by its pane's
/// class too.
std::string nameOfScreen(const platform::UIViewController& screen);

/// The cells of a list screen: labels that are too small for their texts, rows that can be pressed or moved
/// and are too low. Looks at `rows` rows at most, which makes their cells.
void checkCells(platform::PSListController& list, std::int64_t rows, Findings& findings,
                const std::string& language);

/// The same of everything on a screen that is no list of rows, the controls and the tables on it included.
void checkView(platform::UIViewController& screen, Findings& findings, const std::string& language);

}  // namespace settings
