// SPDX-License-Identifier: MIT
#pragma once

namespace platform {

/// A size in points.
struct Size {
    double width = 0;
    double height = 0;
    bool operator==(const Size&) const = default;
};

/// A rectangle in points, in the coordinates of the view that holds it; y grows downwards.
struct Rect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;
    bool operator==(const Rect&) const = default;
};

/// Room kept free at the edges of what scrolls, in points.
struct Insets {
    double top = 0;
    double left = 0;
    double bottom = 0;
    double right = 0;
    bool operator==(const Insets&) const = default;
};

}  // namespace platform
