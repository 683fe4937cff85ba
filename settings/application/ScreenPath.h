// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/foundation/Bundle.h"
#include "platform/foundation/Value.h"
#include "platform/preferences/RowKeys.h"

namespace settings {

/// The way from a bundle's first screen to the one on top, by the rows and links that were pressed, to be
/// gone once more after the screens were left. It holds no screen. Main thread.
class ScreenPath {
  public:
    /// The way to where the user is now.
    static ScreenPath now();
    /// The way that value() gave in another process: screens on it have the numbers that they had there. What
    /// is no such value leads nowhere.
    static ScreenPath ofValue(const platform::Value& value);
    platform::Value value() const;

    /// Whether it leads anywhere at all: false for a user who is at the list of bundles.
    bool entersBundle() const { return !steps_.empty(); }
    /// Goes it from the bundle's first screen, which must be on top. Rows that are still the same ones keep
    /// their keys. Gives a sentence on what it could not be followed to, or nothing when its end was reached.
    std::optional<std::string> follow(const std::shared_ptr<platform::Bundle>& bundle) const;

  private:
    struct Step {
        std::string className;
        std::uint64_t number = 0;
        /// Of the row beneath that opened the screen; 0 for none.
        platform::RowKey opener = 0;
        /// The rows of the screen itself, where it is a list.
        std::optional<platform::RowKeys> keys;
    };

    /// From the bundle's first screen on.
    std::vector<Step> steps_;
    /// What stood above the screens that rows and links lead to.
    std::optional<std::string> end_;
    bool isFromElsewhere_ = false;
};

}  // namespace settings
