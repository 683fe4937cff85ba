// SPDX-License-Identifier: MIT
#include "quietrix/ProfileEditing.h"

#include <unistd.h>

#include <iostream>

#include "device/EscapedText.h"
#include "quietrix/ProfileDifference.h"

namespace console {

namespace {

constexpr std::size_t shortLength = 8;

}  // namespace

std::string nameInWords(const quietrix::QXProfile& profile) {
    return device::visibleText("\"" + profile.title() + "\" (" + profile.identifier().substr(0, shortLength) +
                               ")");
}

std::expected<std::vector<Record>, Refusal> editProfiles(
    Session& session, const std::vector<std::string>& names,
    const std::function<void(quietrix::QXProfile& profile)>& edit, std::string& text) {
    std::vector<Record> edited;
    const auto done = session.change(
        [&](const Session::Records& present) -> std::expected<std::vector<Session::Change>, Refusal> {
            auto profiles = profilesNamed(names, present);
            if (!profiles) return std::unexpected(profiles.error());
            edited = *std::move(profiles);
            text.clear();
            std::vector<Session::Change> changes;
            for (const Record& profile : edited) {
                const platform::Dictionary before = profile->storedValues();
                edit(*profile);
                const auto difference = differenceBetween(before, profile->storedValues());
                if (difference.empty()) continue;
                text += nameInWords(*profile) + ": " + changesInWords(difference) + "\n";
                changes.push_back({Session::Change::Kind::Update, profile});
            }
            return changes;
        });
    if (!done) return std::unexpected(done.error());
    return edited;
}

std::expected<void, Refusal> confirmed(Session& session, bool isAgreed, const std::string& question) {
    if (isAgreed) return {};
    if (isatty(STDIN_FILENO) != 1)
        return refusal(Status::NotConfirmed, "Nothing was done: without a terminal --yes is needed.");
    session.output().ask(question + " [y/N] ");
    std::string line;
    std::getline(std::cin, line);
    if (line == "y" || line == "Y" || line == "yes") return {};
    return refusal(Status::NotConfirmed, "Nothing was done.");
}

}  // namespace console
