// SPDX-License-Identifier: MIT
#include "velmora/VMUtils.h"

#include "platform/foundation/Device.h"
#include "platform/foundation/Journal.h"
#include "platform/foundation/LogSink.h"
#include "platform/uikit/UIDevice.h"

namespace velmora {

PLATFORM_REGISTER_CLASS(VMUtils)

void VMUtils::killProcessByName(std::string_view name) {
    // Before the kill: what follows from it comes after it.
    ::platform::Journal::shared().record("kill", {{"process", name}});
    const auto processes = ::platform::Device::current().processes;
    if (!processes || !processes->killProcessByName(name))
        ::platform::log("VMUtils: There is no process \"" + std::string(name) + "\" to end.");
}

std::string VMUtils::localizedLabelFromUIKit(std::string_view text) {
    return ::platform::localizedLabelFromUIKit(text);
}

std::string VMUtils::platform() {
    const auto& facts = ::platform::Device::current().facts;
    return facts ? facts->model() : std::string();
}

}  // namespace velmora
