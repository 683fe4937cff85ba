// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "platform/foundation/Object.h"

namespace velmora {

/// Small helpers of the maker's library. Main thread.
class VMUtils : public platform::Object {
    PLATFORM_CLASS(VMUtils, platform::Object)

  public:
    /// Ends the phone's process of that name, which the journal tells ("kill"). When there is none, one log
    /// line says so.
    static void killProcessByName(std::string_view name);
    /// The interface toolkit's own translation of a text; the text itself when it has none.
    static std::string localizedLabelFromUIKit(std::string_view text);
    /// The name of the device's model, "Phone7,2"; "" when the device does not say.
    static std::string platform();
};

}  // namespace velmora
