// SPDX-License-Identifier: MIT
#include "device/EscapedText.h"
#include "quietrix/Commands.h"
#include "quietrix/ProfileText.h"
#include "quietrix/Table.h"

namespace console {

namespace {

Outcome show(Session& session, const std::string& name) {
    const auto profiles = session.profiles();
    if (!profiles) return std::unexpected(profiles.error());
    const auto profile = profileNamed(name, *profiles);
    if (!profile) return std::unexpected(profile.error());
    std::vector<std::vector<std::string>> rows;
    for (const auto& [key, words] : valuesInWords(**profile))
        rows.push_back({key, device::visibleText(words)});
    return Answer{.text = table(rows,
                                [&](std::size_t, std::size_t column, const std::string& text) {
                                    return column == 0 ? session.output().coloured(Output::Colour::Dim, text)
                                                       : text;
                                }),
                  .json = jsonOfProfile(**profile),
                  .note = ""};
}

}  // namespace

void addShow(Commands& commands) {
    Command& command = commands.add("show", "Tells every key of a profile");
    const auto profile = command.word("PROFILE", "The profile");
    command.run([profile](Session& session) { return show(session, profile()); });
}

}  // namespace console
