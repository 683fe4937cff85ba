// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/foundation/Method.h"
#include "platform/preferences/PSViewController.h"

namespace quietrix {

/// The recommendation that the user shares; its grammar is part of it.
inline constexpr std::string_view shareSentence =
    "I'm Loving #Quietrix, which automatically silence your iPhone by syncing with your calendar on your "
    "iDevice.";

/// Sharing and following, once for all screens that have the button: each of them has the two actions
/// `shareAction:` and `__tessaneTwitterAction:` and hands them on to these. Main thread.

/// The sheet with "Share", "Follow" and "Cancel", presented from the screen. "Share" sends `shareAction` with
/// nil to the screen. The sheet holds the screen weakly.
void showShareSheet(platform::PSViewController& screen,
                    platform::Method<void(const std::shared_ptr<platform::Object>&)> shareAction);

/// The composer with the share sentence, presented from the screen: Weibo when the first preferred language
/// is exactly "zh-Hans", otherwise Twitter.
void presentShareComposer(platform::PSViewController& screen);

}  // namespace quietrix
