// SPDX-License-Identifier: MIT
#include "settings/commands/PhoneCommands.h"

#include <string>

#include "device/DatagramTransport.h"
#include "platform/foundation/DarwinNotificationCenter.h"
#include "platform/foundation/Device.h"
#include "settings/application/TopScreen.h"

namespace settings {

using platform::failure;
using platform::Result;

Outcome<void> postNotification(Application& /*application*/, const CommandFields& fields) {
    const Result<std::string> name = fields.text("name");
    if (!name) return std::unexpected(name.error());
    constexpr std::size_t longest = device::DatagramTransport::maximumNameLength;
    if (name->empty() || name->size() > longest || name->find('\0') != std::string::npos) {
        return failure("\"name\" must be 1 to " + std::to_string(longest) +
                       " bytes without a null character.");
    }
    platform::DarwinNotificationCenter::shared().post(*name);
    return {};
}

Outcome<void> switchDarkMode(Application& /*application*/, const CommandFields& fields) {
    const Result<bool> on = fields.boolean("on");
    if (!on) return std::unexpected(on.error());
    const auto& facts = platform::Device::current().facts;
    if (!facts) return failure("This device has no dark mode.");
    if (facts->isDarkMode() == *on) return {};
    facts->setDarkMode(*on);
    // Cells took their colours when they were made. The rows themselves stay what they are.
    for (const auto& list : shownLists()) {
        const auto rows = list->specifiers();
        for (const auto& specifier : *rows) list->reloadSpecifier(specifier);
    }
    return {};
}

Outcome<void> advanceClock(Application& application, const CommandFields& fields) {
    const Result<double> seconds = fields.seconds("seconds");
    if (!seconds) return std::unexpected(seconds.error());
    if (!application.clock()) return failure("The clock is the system's: it moves by itself.");
    return device::advanceRunning(*application.clock(), *seconds);
}

Outcome<void> reopenBundle(Application& application, const CommandFields& /*fields*/) {
    application.reopen();
    return {};
}

}  // namespace settings
