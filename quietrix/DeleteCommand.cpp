// SPDX-License-Identifier: MIT
#include "quietrix/Commands.h"
#include "quietrix/ProfileEditing.h"
#include "quietrix/ProfileText.h"

namespace console {

namespace {

Outcome remove(Session& session, const std::vector<std::string>& names, bool isAgreed) {
    const auto present = session.profiles();
    if (!present) return std::unexpected(present.error());
    auto named = profilesNamed(names, *present);
    if (!named) return std::unexpected(named.error());
    std::string list;
    // What was agreed to is what goes, whatever has these names by then.
    std::vector<std::string> identifiers;
    for (const Record& profile : *named) {
        list += (list.empty() ? "" : ", ") + nameInWords(*profile);
        identifiers.push_back(profile->identifier());
    }
    if (const auto asked = confirmed(session, isAgreed, "Delete " + list + "?"); !asked)
        return std::unexpected(asked.error());

    std::vector<Record> gone;
    const auto done = session.change(
        [&](const Session::Records& records) -> std::expected<std::vector<Session::Change>, Refusal> {
            auto profiles = profilesNamed(identifiers, records);
            if (!profiles) return std::unexpected(profiles.error());
            gone = *std::move(profiles);
            std::vector<Session::Change> changes;
            changes.reserve(gone.size());
            for (const Record& profile : gone) changes.push_back({Session::Change::Kind::Delete, profile});
            return changes;
        });
    if (!done) return std::unexpected(done.error());
    return Answer{.text = "Deleted " + list + "\n", .json = jsonOfProfiles(gone)};
}

}  // namespace

void addDelete(Commands& commands) {
    Command& command = commands.add("delete", "Deletes profiles, and asks before");
    const auto profiles = command.words("PROFILE", "The profiles");
    const auto isAgreed = command.flag("--yes", "Does not ask");
    command.run([=](Session& session) { return remove(session, profiles(), isAgreed()); });
}

}  // namespace console
