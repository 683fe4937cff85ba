// SPDX-License-Identifier: MIT
#include "settings/commands/Commands.h"

#include <algorithm>
#include <array>
#include <string>

#include "settings/application/TopScreen.h"
#include "settings/commands/PhoneCommands.h"
#include "settings/commands/PickerCommands.h"
#include "settings/commands/RowCommands.h"
#include "settings/commands/RowSearch.h"
#include "settings/commands/ScreenCommands.h"

namespace settings {

using platform::Dictionary;

namespace {

enum class WhilePresented { Refused, Acts };

struct Command {
    std::string_view name;
    WhilePresented whilePresented;
    Outcome<Dictionary> (*perform)(Application&, const CommandFields&);
};

/// A command whose answer says nothing but what every answer says.
template <Outcome<void> (*perform)(Application&, const CommandFields&)>
Outcome<Dictionary> done(Application& application, const CommandFields& fields) {
    if (const Outcome<void> performed = perform(application, fields); !performed)
        return std::unexpected(performed.error());
    return Dictionary();
}

Outcome<void> doNothing(Application& /*application*/, const CommandFields& /*fields*/) {
    return {};
}

constexpr std::array commands{
    Command{"state", WhilePresented::Acts, done<doNothing>},
    Command{"find", WhilePresented::Acts, findRows},
    Command{"tap", WhilePresented::Refused, done<tapRow>},
    Command{"set", WhilePresented::Refused, done<setRow>},
    Command{"delete", WhilePresented::Refused, done<deleteRow>},
    Command{"edit", WhilePresented::Refused, done<editRows>},
    Command{"bar", WhilePresented::Refused, done<pressBarButton>},
    Command{"back", WhilePresented::Refused, done<goBack>},
    Command{"choose", WhilePresented::Acts, done<chooseAction>},
    Command{"pickTimeRow", WhilePresented::Refused, done<pickTimeRow>},
    Command{"pickTime", WhilePresented::Refused, done<pickTime>},
    Command{"pickTone", WhilePresented::Refused, done<pickTone>},
    Command{"compose", WhilePresented::Acts, done<endComposer>},
    Command{"post", WhilePresented::Acts, done<postNotification>},
    Command{"dark", WhilePresented::Acts, done<switchDarkMode>},
    Command{"advance", WhilePresented::Acts, done<advanceClock>},
    Command{"link", WhilePresented::Refused, done<openLink>},
    Command{"open", WhilePresented::Acts, done<reopenBundle>},
    Command{"device", WhilePresented::Acts, changeDevice},
    Command{"fault", WhilePresented::Acts, done<changeFaults>},
    Command{"files", WhilePresented::Acts, lookAtFiles},
    Command{"postLocal", WhilePresented::Acts, done<postLocally>},
    Command{"kill", WhilePresented::Acts, done<killProcess>},
};

const Command* find(std::string_view name) {
    const auto* command = std::ranges::find(commands, name, &Command::name);
    return command == commands.end() ? nullptr : command;
}

}  // namespace

bool isCommand(std::string_view name) {
    return find(name) != nullptr;
}

Outcome<Dictionary> performCommand(Application& application, std::string_view name,
                                   const CommandFields& fields) {
    const Command* command = find(name);
    if (!command) return platform::failure("There is no command \"" + std::string(name) + "\".");
    if (command->whilePresented == WhilePresented::Refused && TopScreen::now().presented) {
        return platform::failure("\"" + std::string(name) +
                                 "\" cannot be done while something is presented.");
    }
    return command->perform(application, fields);
}

}  // namespace settings
