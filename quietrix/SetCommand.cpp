// SPDX-License-Identifier: MIT
#include "quietrix/Assignment.h"
#include "quietrix/Commands.h"
#include "quietrix/ProfileEditing.h"
#include "quietrix/ProfileText.h"

namespace console {

namespace {

Outcome set(Session& session, const std::string& name, const std::vector<std::string>& texts) {
    const auto assignments = Assignment::parse(texts);
    if (!assignments) return refusal(Status::WrongUse, assignments.error().localizedDescription);
    Answer answer;
    const auto profiles = editProfiles(
        session, {name},
        [&](quietrix::QXProfile& profile) {
            for (const Assignment& assignment : *assignments) assignment.applyTo(profile);
        },
        answer.text);
    if (!profiles) return std::unexpected(profiles.error());
    answer.json = jsonOfProfile(*profiles->front());
    return answer;
}

Outcome enable(Session& session, const std::vector<std::string>& names, bool isEnabled) {
    Answer answer;
    const auto profiles = editProfiles(
        session, names,
        [&](quietrix::QXProfile& profile) {
            if (profile.isEnabled() != isEnabled) profile.setEnabled(isEnabled);
        },
        answer.text);
    if (!profiles) return std::unexpected(profiles.error());
    answer.json = jsonOfProfiles(*profiles);
    return answer;
}

}  // namespace

void addSet(Commands& commands) {
    Command& command = commands.add("set", "Changes a profile: all of the keys or none; += and -= for lists");
    const auto profile = command.word("PROFILE", "The profile");
    const auto assignments = command.words("KEY=VALUE", "The keys; the command keys tells them");
    command.run([=](Session& session) { return set(session, profile(), assignments()); });
}

void addEnable(Commands& commands) {
    for (const bool isEnabled : {true, false}) {
        Command& command = isEnabled ? commands.add("enable", "Makes profiles active")
                                     : commands.add("disable", "Makes profiles inactive");
        const auto profiles = command.words("PROFILE", "The profiles");
        command.run([=](Session& session) { return enable(session, profiles(), isEnabled); });
    }
}

}  // namespace console
