// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/foundation/Bundle.h"
#include "platform/preferences/PSViewController.h"

namespace settings {

/// The phone paths of the installed bundles: the directories among the phone's preference bundles whose names
/// end in ".bundle", sorted.
std::vector<std::string> installedBundlePaths();

/// The Info list's display name, else its name, else the directory's name without ".bundle".
std::string displayNameOfBundle(const platform::Bundle& bundle);
/// What the list has for the bundle, and what its first screen is opened with: a link row under the display
/// name, its user info the bundle's path.
std::shared_ptr<platform::PSSpecifier> specifierForBundle(const std::shared_ptr<platform::Bundle>& bundle);

/// Loads the bundle's code if need be and makes its first screen, or a screen that tells why that cannot be
/// done. Never null; its specifier is set.
std::shared_ptr<platform::PSViewController> firstScreenOfBundle(
    const std::shared_ptr<platform::Bundle>& bundle);

}  // namespace settings
