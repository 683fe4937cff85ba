// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <limits>

#include "platform/foundation/Value.h"
#include "settings/application/Application.h"
#include "settings/application/TopScreen.h"
#include "settings/state/ScreenValues.h"

namespace settings {

/// Which rows of a screen somebody looks at.
struct RowWindow {
    std::int64_t from = 0;
    std::int64_t count = std::numeric_limits<std::int64_t>::max();

    bool operator==(const RowWindow&) const = default;
};

/// Writes what the user sees just now. Main thread.
class StateWriter {
  public:
    /// The application must outlive this.
    explicit StateWriter(Application& application)
        : application_(application), values_(application.images()) {}

    /// The state without "protocol", "revision" and "events", which depend on who asks, and without "device".
    /// Makes the cells of the window's rows, and of no others.
    platform::Dictionary state(RowWindow window) const;

  private:
    platform::Value screen(const TopScreen& top, RowWindow window) const;
    platform::Value links(const TopScreen& top) const;
    platform::Value bar(const TopScreen& top) const;
    platform::Value titleView(const platform::UIView* view) const;
    /// The seconds that it takes to fade in, 0 without a fade.
    static double titleFade(const platform::UIView* view);
    platform::Value backButton(const TopScreen& top) const;
    platform::Value barItems(const platform::UINavigationItem::Items& items) const;

    Application& application_;
    ScreenValues values_;
};

}  // namespace settings
