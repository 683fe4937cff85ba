// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "platform/foundation/Error.h"
#include "platform/foundation/Value.h"

namespace quietrix {

/// The product's main settings file, a property list whose root is a dictionary. This plug-in's only key in
/// it is the product's switch; the others are kept.
std::string mainSettingsPath();
/// The key of the product's switch.
std::string productSwitchKey();

/// What the file holds: a dictionary, or nil when it is not there. The error says why one that is there is of
/// no use.
platform::Result<platform::Value> readMainSettings();
/// Writes the whole file in place. Settings that no property list can hold, nil among them, write nothing, as
/// a success.
platform::Result<void> writeMainSettings(const platform::Value& settings);
/// Tells the engine that the product was switched on or off.
void announceProductSwitch();

}  // namespace quietrix
