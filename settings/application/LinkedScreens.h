// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/foundation/Bundle.h"
#include "settings/application/TopScreen.h"

namespace settings {

/// A way to a screen that no row opens. A bundle names such screens in its Info list under "LinkedScreens",
/// an array of dictionaries: "Title" (a key of the bundle's texts), "Class", "Screen" (the class beneath
/// whose rows the link stands) and "Row" (the identifier of the row there whose user info the screen is
/// given).
struct LinkedScreen {
    std::string title;
    std::string className;
    /// What the screen is opened with.
    std::shared_ptr<platform::PSSpecifier> specifier;
};

/// The links of the screen on top: those that name its class and whose row is in its row list just now. An
/// entry that lacks one of the four texts is none. `bundle` may be null.
std::vector<LinkedScreen> linkedScreens(const std::shared_ptr<platform::Bundle>& bundle,
                                        const TopScreen& top);
/// Pushes it.
void openLinkedScreen(platform::UINavigationController& navigation, const LinkedScreen& link);

}  // namespace settings
