// SPDX-License-Identifier: MIT
#include "settings/Commands.h"

#include <algorithm>
#include <array>
#include <string>

#include "settings/Front.h"
#include "settings/PhoneCommands.h"
#include "settings/RowCommands.h"
#include "settings/ScreenCommands.h"

namespace settings {

namespace {

enum class WhilePresented { Refused, Acts };

struct Command {
    std::string_view name;
    WhilePresented whilePresented;
    Outcome<void> (*perform)(Application&, const CommandFields&);
};

Outcome<void> doNothing(Application& /*application*/, const CommandFields& /*fields*/) {
    return {};
}

constexpr std::array commands{
    Command{"state", WhilePresented::Acts, doNothing},
    Command{"tap", WhilePresented::Refused, tapRow},
    Command{"set", WhilePresented::Refused, setRow},
    Command{"delete", WhilePresented::Refused, deleteRow},
    Command{"edit", WhilePresented::Refused, editRows},
    Command{"bar", WhilePresented::Refused, pressBarButton},
    Command{"back", WhilePresented::Refused, goBack},
    Command{"choose", WhilePresented::Acts, chooseAction},
    Command{"pickTimeRow", WhilePresented::Refused, selectTimeRow},
    Command{"pickTime", WhilePresented::Refused, moveTimePicker},
    Command{"pickTone", WhilePresented::Refused, selectTone},
    Command{"compose", WhilePresented::Acts, endComposer},
    Command{"post", WhilePresented::Acts, postNotification},
    Command{"dark", WhilePresented::Acts, switchDarkMode},
    Command{"advance", WhilePresented::Acts, advanceClock},
    Command{"link", WhilePresented::Refused, openLink},
    Command{"open", WhilePresented::Acts, reopenBundle},
};

const Command* find(std::string_view name) {
    const auto* command = std::ranges::find(commands, name, &Command::name);
    return command == commands.end() ? nullptr : command;
}

}  // namespace

bool isCommand(std::string_view name) {
    return find(name) != nullptr;
}

Outcome<void> performCommand(Application& application, std::string_view name, const CommandFields& fields) {
    const Command* command = find(name);
    if (!command) return platform::failure("There is no command \"" + std::string(name) + "\".");
    if (command->whilePresented == WhilePresented::Refused && Front::now().presented) {
        return platform::failure("\"" + std::string(name) +
                                 "\" cannot be done while something is presented.");
    }
    return command->perform(application, fields);
}

}  // namespace settings
