// SPDX-License-Identifier: MIT
#include "settings/exploring/ExploredStep.h"

#include <utility>
#include <vector>

namespace settings {

using platform::Array;
using platform::Dictionary;
using platform::Value;

namespace {

/// No phone counts so far.
constexpr std::int64_t otherNumber = 9'000'000;
constexpr const char* otherKey = "zzzzzz";

bool isLike(const Value& row, const MeantRow& meant) {
    return row["name"].stringOr() == meant.name && row["identifier"].stringOr() == meant.identifier;
}

}  // namespace

std::string commandName(const ExploredStep& step) {
    const auto* command = std::get_if<ExploredStep::Command>(&step.what);
    return command ? Value(command->fields)["do"].stringOr() : "";
}

Value meantRow(const MeantRow& row, const Value& state) {
    const Value screen = state["screen"];
    const Array* rows = screen["rows"].array();
    if (!rows) return nullptr;
    // The one in its place first: several may be alike.
    const auto index = static_cast<std::size_t>(row.index);
    if (row.index >= 0 && index < rows->size() && isLike((*rows)[index], row)) return (*rows)[index];
    for (const Value& each : *rows) {
        if (isLike(each, row)) return each;
    }
    if (row.index >= 0 && index < rows->size()) return (*rows)[index];
    return nullptr;
}

Dictionary aimed(const ExploredStep::Command& command, const Value& state) {
    using Aim = ExploredStep::Aim;
    Dictionary fields = command.fields;
    if (command.aim == Aim::Present) {
        fields["screen"] = state["screen"]["id"];
        if (!state["presented"].isNil()) fields["presented"] = state["presented"]["id"];
    }
    if (command.aim == Aim::OtherScreen) fields["screen"] = otherNumber;
    if (!command.row) return fields;
    const Value row = meantRow(*command.row, state);
    if (command.aim == Aim::OtherKey) {
        fields["key"] = otherKey;
    } else if (command.aim == Aim::Present && !row.isNil()) {
        fields["key"] = row["key"];
    } else {
        fields["row"] = row.isNil() ? Value(command.row->index) : row["index"];
    }
    return fields;
}

MachineAnswers machineAnswers(std::size_t which) {
    Calendars calendars{{"home/family.ics", "Family", "Home", 0xFF2D55},
                        {"home/friends.ics", "Friends", "Home", 0x34AADC},
                        {"work/meetings.ics", "Meetings", "Work", 0x4CD964}};
    Networks networks{"Library", "Home", "Office"};
    Tones tones{{"texttone:Chord", "Chord"}, {"texttone:Bell", "Bell"}, {"texttone:Glass", "Glass"}};
    switch (which) {
        case 1:
            return {{Calendars(), {}}, {Networks(), {}}, {Connected(false), {}}, {Tones(), {}}};
        case 2:
            // One less, one more, one that is called otherwise by now.
            calendars.erase(calendars.begin());
            calendars.front().title = "Freunde 👋 und ein sehr langer Name, der in keine Zeile passt";
            calendars.push_back({"work/empty.ics", "", "Work", 0});
            networks = {"Office", "café", "100% free <wifi> \"here\""};
            tones.pop_back();
            break;
        case 3:
            calendars.push_back(calendars.front());
            networks.insert(networks.end(), {"Home", "home"});
            tones.push_back(tones.front());
            break;
        default:
            break;
    }
    return {{std::move(calendars), {}},
            {std::move(networks), {}},
            {Connected(which != 3), {}},
            {std::move(tones), {}}};
}

}  // namespace settings
