// SPDX-License-Identifier: MIT
#include "device/EscapedText.h"
#include "quietrix/Commands.h"
#include "quietrix/ProfileText.h"
#include "quietrix/Table.h"

namespace console {

namespace {

Outcome list(Session& session) {
    const auto profiles = session.profiles();
    if (!profiles) return std::unexpected(profiles.error());
    Answer answer{.text = "", .json = jsonOfProfiles(*profiles)};
    if (profiles->empty()) {
        answer.note = "There are no profiles.";
        return answer;
    }
    std::vector<std::vector<std::string>> rows{{"STATE", "TITLE", "HOURS", "CONDITIONS", "IDENTIFIER"}};
    const auto identifiers = shortIdentifiers(*profiles);
    for (std::size_t i = 0; i < profiles->size(); ++i) {
        const quietrix::QXProfile& profile = *profiles->at(i);
        rows.push_back({profile.isEnabled() ? "active" : "inactive", device::visibleText(profile.title()),
                        device::visibleText(hoursText(profile)), conditionsText(profile),
                        device::visibleText(identifiers[i])});
    }
    answer.text = table(rows, [&](std::size_t line, std::size_t column, const std::string& text) {
        using Colour = Output::Colour;
        if (line == 0) return session.output().coloured(Colour::Dim, text);
        if (column == 0)
            return session.output().coloured(text == "active" ? Colour::Green : Colour::Dim, text);
        return text;
    });
    return answer;
}

/// For shells, which offer them as words: a title that is no line is left out.
Outcome titles(Session& session) {
    const auto profiles = session.profiles();
    if (!profiles) return std::unexpected(profiles.error());
    Answer answer{.text = "", .json = jsonOfProfiles(*profiles)};
    for (const auto& profile : *profiles) {
        const std::string& title = profile->title();
        if (!title.empty() && device::visibleText(title) == title) answer.text += title + "\n";
    }
    return answer;
}

}  // namespace

void addList(Commands& commands) {
    Command& command =
        commands.add("list", "Lists the profiles: state, title, hours, conditions, identifier");
    const auto titlesOnly = command.flag("--titles", "Prints the titles alone, a line each");
    command.run([titlesOnly](Session& session) { return titlesOnly() ? titles(session) : list(session); });
}

}  // namespace console
