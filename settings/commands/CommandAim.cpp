// SPDX-License-Identifier: MIT
#include "settings/commands/CommandAim.h"

#include <memory>
#include <string>

#include "settings/application/TopScreen.h"

namespace settings {

namespace {

using Shown = std::shared_ptr<platform::UIViewController>;

bool isNumbered(const Shown& shown, std::int64_t number) {
    return shown && shown->number() == static_cast<std::uint64_t>(number);
}

}  // namespace

Outcome<void> checkAim(const CommandFields& fields) {
    // Both are read first: a field of a wrong type is the sender's mistake whatever is shown.
    const auto screen = fields.optionalIndex("screen");
    if (!screen) return std::unexpected(screen.error());
    const auto presented = fields.optionalIndex("presented");
    if (!presented) return std::unexpected(presented.error());
    const TopScreen top = TopScreen::now();
    if (*screen && !isNumbered(top.screen, **screen))
        return stale("The screen " + std::to_string(**screen) + " is not on top any more.");
    if (*presented && !isNumbered(top.presented, **presented))
        return stale("What was presented as " + std::to_string(**presented) + " is not presented any more.");
    return {};
}

}  // namespace settings
