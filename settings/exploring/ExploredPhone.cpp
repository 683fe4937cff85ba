// SPDX-License-Identifier: MIT
#include "settings/exploring/ExploredPhone.h"

#include <utility>

#include "device/HostFile.h"
#include "device/Interruption.h"
#include "device/RootFileSystem.h"
#include "settings/channels/JSON.h"

namespace settings {

using platform::Array;
using platform::Dictionary;
using platform::failure;
using platform::Value;

platform::Result<ExploredPhone> ExploredPhone::begin(const ExploredBeginning& beginning) {
    auto child = ChildPhone::begin(beginning.start, beginning.life);
    if (!child) return std::unexpected(child.error());
    ExploredPhone phone(*std::move(child), beginning.patience);
    RecordedStep begun;
    if (const auto sent = phone.send(std::move(begun), nullptr); !sent) return std::unexpected(sent.error());
    if (phone.breach_) return phone;
    const Dictionary look{{"do", "state"}};
    if (const auto sent = phone.sendCommand(look, jsonText(look), ExploredStep::Aim::Place); !sent)
        return std::unexpected(sent.error());
    return phone;
}

platform::Result<std::optional<Breach>> ExploredPhone::perform(const ExploredStep& step) {
    using Step = ExploredStep;
    if (breach_) return breach_;
    platform::Result<void> sent;
    if (const auto* command = std::get_if<Step::Command>(&step.what)) {
        const Dictionary fields = aimed(*command, state());
        sent = sendCommand(fields, jsonText(fields), command->aim);
    } else if (const auto* line = std::get_if<Step::Line>(&step.what)) {
        sent = sendCommand({}, line->text, Step::Aim::Place);
    } else if (const auto* machine = std::get_if<Step::Machine>(&step.what)) {
        machine_ = machine->which;
        isUndisturbed_ = false;
    } else {
        RecordedStep recorded;
        recorded.time = time_;
        if (const auto* time = std::get_if<Step::Time>(&step.what)) {
            recorded.time += time->milliseconds;
            recorded.what = RecordedStep::TimePassed();
        } else if (const auto* notified = std::get_if<Step::Notified>(&step.what)) {
            recorded.what = RecordedStep::Notified{notified->name};
        } else if (const auto* file = std::get_if<Step::FileChanged>(&step.what)) {
            recorded.what = changed(*file);
        }
        sent = send(std::move(recorded), nullptr);
    }
    if (!sent) return std::unexpected(sent.error());
    return breach_;
}

platform::Result<std::optional<Breach>> ExploredPhone::end() {
    if (breach_) return breach_;
    if (auto rested = perform({ExploredStep::Time{restMilliseconds}}); !rested || *rested) return rested;
    if (const auto death = child_.end(patience_)) {
        if (device::Interruption::signal() != 0) return failure("The program was interrupted.");
        breach_ = Breach{"died", death->how,
                         "The program ended with " + death->how + " when the channel was closed" +
                             (death->said.empty() ? "." : ": " + death->said)};
    }
    return breach_;
}

platform::Result<void> ExploredPhone::sendCommand(const Dictionary& fields, const std::string& line,
                                                  ExploredStep::Aim aim) {
    using Aim = ExploredStep::Aim;
    const AskedCommand asked{fields, isUndisturbed_, aim == Aim::OtherScreen || aim == Aim::OtherKey,
                             aim == Aim::Present};
    RecordedStep step;
    step.time = time_;
    step.what = RecordedStep::Command{line};
    return send(std::move(step), &asked);
}

platform::Result<void> ExploredPhone::send(RecordedStep step, const AskedCommand* asked) {
    step.found = machineAnswers(machine_);
    isUndisturbed_ = asked != nullptr;
    auto answer = child_.send(step, patience_);
    if (device::Interruption::signal() != 0) return failure("The program was interrupted.");
    if (const auto* death = std::get_if<PhoneDeath>(&answer)) {
        noteDeath(*death, step);
        return {};
    }
    const Dictionary& report = std::get<Dictionary>(answer);
    if (const auto error = report.find("error"); error != report.end())
        return failure(error->second.stringOr("The phone cannot go on."));
    take(report, step, asked);
    return {};
}

void ExploredPhone::take(const Dictionary& report, RecordedStep& step, const AskedCommand* asked) {
    const Value fields(report);
    time_ = fields["time"].integer().value_or(time_);
    memory_ = fields["memory"].integer().value_or(0);
    stored_ = fields["stored"].integer().value_or(0);
    for (const auto& [key, list] : {std::pair{"paths", &known_.storedPaths}, {"names", &known_.names}}) {
        const Value told = fields[key];
        if (!told.array()) continue;
        for (const Value& each : *told.array()) list->push_back(each.stringOr());
    }
    if (asked) {
        const Value answer = fields["answer"];
        step.answer = jsonText(answer);
        breach_ = checks_.check(*asked, answer);
    }
    if (const Value kept = fields["kept"]; kept.array() && !breach_) {
        const std::string screen = kept.array()->front().stringOr();
        breach_ =
            Breach{"screenStays", screen, "The screen \"" + screen + "\" is still there after it was left."};
    }
    recorded_.push_back(std::move(step));
}

void ExploredPhone::noteDeath(const PhoneDeath& death, const RecordedStep& step) {
    breach_ = Breach{"died", death.how,
                     "The program died: " + death.how + (death.said.empty() ? "." : ": " + death.said)};
    recorded_.push_back(step);
    recorded_.back().died = death.how;
}

RecordedStep::FileChanged ExploredPhone::changed(const ExploredStep::FileChanged& file) const {
    const device::RootFileSystem files(child_.rootDirectory());
    auto present = device::host::readFile(files.hostPath(file.path));
    return {file.path, edited(present ? std::optional(*std::move(present)) : std::nullopt, file.edit)};
}

}  // namespace settings
