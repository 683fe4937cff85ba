// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "platform/preferences/PSListController.h"
#include "settings/checking/Finding.h"

namespace settings {

/// How findings name a row: by its identifier, else by its name.
std::string nameOfRow(const platform::PSSpecifier& row);

/// Whether the class can be made as a screen.
bool isScreenClass(const std::string& name);

/// What the rows themselves say: classes that do not exist, setters, getters and actions that are missing,
/// identifiers that come twice. Sends nothing to anybody.
void checkRows(platform::PSListController& list, Findings& findings, const std::string& language);

}  // namespace settings
