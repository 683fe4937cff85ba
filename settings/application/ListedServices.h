// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "platform/foundation/Bundle.h"
#include "settings/application/TopScreen.h"

namespace settings {

/// What a screen may list that comes from the device and not from its bundle. None: it lists nothing of the
/// kind.
enum class ListedService { None, Calendars, Networks, Tones };

/// Of which service the screen on top lists something and has nothing just now; None when it lacks nothing. A
/// bundle names such screens in its Info list under "ListedServices", an array of dictionaries: "Screen" (the
/// class) and "Service" ("calendars", "networks" or "tones"); any other entry is none. Calendars and networks
/// are rows, each with the calendar or the network as its user info; tones are what a tone picker shows. The
/// device itself is not asked: what counts is what the user sees. `bundle` may be null. Main thread.
ListedService missingService(const std::shared_ptr<platform::Bundle>& bundle, const TopScreen& top);

}  // namespace settings
