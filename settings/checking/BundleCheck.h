// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <set>
#include <string>

#include "platform/foundation/Error.h"
#include "settings/application/Application.h"
#include "settings/checking/Finding.h"
#include "settings/checking/ScreenTour.h"

namespace settings {

/// What is to be looked at.
struct CheckOptions {
    Timings timings = Timings::Off;
    /// Puts data of an existing phone under the root, when there are any, for a second round.
    std::function<platform::Result<void>()> bringData = {};
};

/// What came of it.
struct CheckOutcome {
    Findings findings;
    /// The classes of the screens that were looked at.
    std::set<std::string> screens;
    /// How often the tour was made: for each language, light and dark, phone and pad, with new and existing
    /// data.
    std::size_t tours = 0;
};

/// Looks at everything of the bundle that the application is made for, at its phone path: its files, and
/// every screen that rows and links lead to, on each kind of device. The application is started here; its
/// phone is one that may be changed, on a root that nobody else uses. The error, a sentence, is that the
/// bundle cannot be opened, or what `bringData` says. Main thread.
platform::Result<CheckOutcome> checkBundle(Application& application, const std::string& bundlePath,
                                           const CheckOptions& options);

}  // namespace settings
