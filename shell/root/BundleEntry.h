// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "platform/foundation/DarwinNotificationCenter.h"

namespace quietrix {

/// The bundle's load-time constructor: runs once when the bundle is loaded, before any screen exists, and
/// subscribes the two callbacks below to the engine's Darwin notifications for the life of the process.
void CHConstructor2386();

/// A profile began or ceased to be applied: reloads the store, so that it knows, then posts the same name
/// locally.
void profileAppliedCallBack(platform::DarwinNotificationCenter& center, void* observer,
                            const std::string& name, const void* object, const platform::Value& userInfo);

/// A profile was added, changed or deleted: posts the applied-state notification locally, whatever name came.
/// The store is left alone: the screens that observe it reload it themselves.
void profileDataChangedCallBack(platform::DarwinNotificationCenter& center, void* observer,
                                const std::string& name, const void* object, const platform::Value& userInfo);

}  // namespace quietrix
