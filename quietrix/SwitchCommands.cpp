// SPDX-License-Identifier: MIT
// The product's switch, moved as the root list of the phone moves it.
#include <algorithm>

#include "device/EscapedText.h"
#include "quietrix/Commands.h"
#include "shell/base/MainSettings.h"

namespace console {

namespace {

std::expected<platform::Value, Refusal> settings() {
    auto read = quietrix::readMainSettings();
    if (read) return *std::move(read);
    return refusal(Status::Failed, "The settings file " + device::quotedText(quietrix::mainSettingsPath()) +
                                       " cannot be used: " + read.error().localizedDescription);
}

Outcome status(Session& session) {
    const auto present = settings();
    if (!present) return std::unexpected(present.error());
    const auto profiles = session.profiles();
    if (!profiles) return std::unexpected(profiles.error());
    const bool isOn = (*present)[quietrix::productSwitchKey()].isTrue();
    const auto active = std::ranges::count_if(*profiles, [](const auto& each) { return each->isEnabled(); });
    const auto inactive = std::ssize(*profiles) - active;
    const std::string& root = session.files().rootDirectory();
    return Answer{.text = std::string(isOn ? "on" : "off") + ", " + std::to_string(active) + " active and " +
                          std::to_string(inactive) + " inactive profiles in " + device::visibleText(root) +
                          "\n",
                  .json = {{"enabled", isOn},
                           {"root", device::escapedText(root)},
                           {"profiles", {{"active", active}, {"inactive", inactive}}}}};
}

Outcome moveSwitch(Session& session, bool isOn) {
    if (isOn) {
        if (const auto ready = session.makeRootReady(); !ready) return std::unexpected(ready.error());
    }
    const auto present = settings();
    if (!present) return std::unexpected(present.error());
    if (present->isNil())
        return refusal(Status::Failed,
                       "There is no settings file " + device::quotedText(quietrix::mainSettingsPath()) + ".");
    platform::Dictionary changed = *present->dictionary();
    changed.insert_or_assign(quietrix::productSwitchKey(), isOn);
    session.connect();
    if (const auto written = quietrix::writeMainSettings(std::move(changed)); !written)
        return refusal(Status::Failed, written.error().localizedDescription);
    quietrix::announceProductSwitch();
    return status(session);
}

}  // namespace

void addSwitch(Commands& commands) {
    commands.add("on", "Switches the product on").run([](Session& session) {
        return moveSwitch(session, true);
    });
    commands.add("off", "Switches the product off").run([](Session& session) {
        return moveSwitch(session, false);
    });
    commands.add("status", "Tells whether the product is on, and how many profiles there are").run(status);
}

}  // namespace console
