// SPDX-License-Identifier: MIT
// The product's switch, moved as the root list of the phone moves it.
#include <algorithm>

#include "device/EscapedText.h"
#include "quietrix/Commands.h"
#include "shell/base/MainSettings.h"

namespace console {

namespace {

Answer answer(const Session& session, bool isOn, const Session::Records* profiles) {
    const std::string& root = session.files().rootDirectory();
    Answer answer{.text = isOn ? "on" : "off",
                  .json = {{"enabled", isOn}, {"root", device::escapedText(root)}, {"profiles", nullptr}}};
    if (profiles) {
        const auto active =
            std::ranges::count_if(*profiles, [](const auto& each) { return each->isEnabled(); });
        const auto inactive = std::ssize(*profiles) - active;
        answer.text +=
            ", " + std::to_string(active) + " active and " + std::to_string(inactive) + " inactive profiles";
        answer.json.as_object()["profiles"] = {{"active", active}, {"inactive", inactive}};
    }
    answer.text += " in " + device::visibleText(root) + "\n";
    return answer;
}

Outcome status(Session& session) {
    const auto present = session.settings();
    if (!present) return std::unexpected(present.error());
    const auto profiles = session.profiles();
    if (!profiles) return std::unexpected(profiles.error());
    return answer(session, (*present)[quietrix::productSwitchKey()].isTrue(), &*profiles);
}

Outcome moveSwitch(Session& session, bool isOn) {
    if (isOn) {
        if (const auto ready = session.makeRootReady(); !ready) return std::unexpected(ready.error());
    }
    const auto present = session.settings();
    if (!present) return std::unexpected(present.error());
    if (present->isNil())
        return refusal(Status::Failed,
                       "There is no settings file " + device::quotedText(quietrix::mainSettingsPath()) + ".");
    platform::Dictionary changed = *present->dictionary();
    changed.insert_or_assign(quietrix::productSwitchKey(), isOn);
    const auto connected = session.connect();
    if (const auto written = quietrix::writeMainSettings(std::move(changed)); !written)
        return refusal(Status::Failed, written.error().localizedDescription);
    quietrix::announceProductSwitch();
    session.noteUnheard(connected);
    // It has been moved, whether the profiles can be counted or not; the log says why they cannot.
    const auto profiles = session.profiles();
    return answer(session, isOn, profiles ? &*profiles : nullptr);
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
