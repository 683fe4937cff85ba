// SPDX-License-Identifier: MIT
#include "device/EscapedText.h"
#include "platform/foundation/Unicode.h"
#include "quietrix/Assignment.h"
#include "quietrix/Commands.h"
#include "quietrix/ProfileText.h"

namespace console {

namespace {

Outcome addProfile(Session& session, const std::string& title, const std::vector<std::string>& texts) {
    if (platform::firstInvalidUTF8(title))
        return refusal(Status::WrongUse, "The title " + device::quotedText(title) + " is not UTF-8.");
    const auto assignments = Assignment::parse(texts);
    if (!assignments) return refusal(Status::WrongUse, assignments.error().localizedDescription);
    const Record profile = quietrix::QXProfile::defaultProfile();
    profile->setTitle(title);
    for (const Assignment& assignment : *assignments) assignment.applyTo(*profile);
    const auto done = session.change(
        [&](const Session::Records&) {
            return std::vector<Session::Change>{{Session::Change::Kind::Add, profile}};
        },
        Session::NewRoot::Make);
    if (!done) return std::unexpected(done.error());
    return Answer{.text = profile->identifier() + "\n", .json = jsonOfProfile(*profile)};
}

}  // namespace

void addAdd(Commands& commands) {
    Command& command = commands.add("add", "Adds a profile and prints its identifier");
    const auto title = command.word("TITLE", "Its title");
    const auto assignments =
        command.words("KEY=VALUE", "What differs from the defaults", Command::Need::Optional);
    command.run([=](Session& session) { return addProfile(session, title(), assignments()); });
}

}  // namespace console
