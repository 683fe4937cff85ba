// SPDX-License-Identifier: MIT
#include <charconv>

#include "device/EscapedText.h"
#include "quietrix/ChangeReport.h"
#include "quietrix/Commands.h"

namespace console {

namespace {

Outcome restore(Session& session, const std::string& word) {
    std::uint64_t number = 0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
    if (error != std::errc() || end != word.data() + word.size() || number == 0) {
        return refusal(Status::WrongUse,
                       device::quotedText(word) +
                           " is no number of the history: a whole number from 1, as history "
                           "lists them.");
    }
    const auto restored = session.restore(number);
    if (!restored) return std::unexpected(restored.error());
    const ChangeReport report = changeReport(restored->difference);
    Answer answer{.text = report.text(), .json = report.json()};
    if (restored->wasPresent) {
        answer.text.clear();
        answer.note = "The profiles are in the state " + word + " already; nothing was changed.";
    }
    return answer;
}

}  // namespace

void addRestore(Commands& commands) {
    Command& command = commands.add(
        "restore", "Goes back to a state of the history; that can be taken back in the same way");
    const auto number = command.word("N", "The number of the state");
    command.run([=](Session& session) { return restore(session, number()); });
}

}  // namespace console
