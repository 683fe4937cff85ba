// SPDX-License-Identifier: MIT
#include "settings/exploring/StepChoice.h"

#include <algorithm>
#include <array>
#include <span>
#include <string_view>
#include <utility>

#include "device/faults/Faults.h"

namespace settings {

using platform::Array;
using platform::Dictionary;
using platform::Value;
using Aim = ExploredStep::Aim;
using Command = ExploredStep::Command;

namespace {

/// Of a long list so many rows are looked at with each step, and so many candidates are rows.
constexpr std::int64_t mostRows = 300;

ExploredStep stepOf(Dictionary fields) {
    return {Command{std::move(fields), std::nullopt}};
}

ExploredStep rowStep(Dictionary fields, MeantRow row) {
    return {Command{std::move(fields), std::move(row)}};
}

std::string text(const Value& value) {
    return value.stringOr();
}

/// What somebody may type, and what nobody expects.
const Array& texts() {
    static const Array values{
        Value("Home"),
        Value(""),
        Value(" "),
        Value("Ünï 🔕 عربي"),
        Value("%@ %s %n"),
        Value("<b>\"&\\"),
        Value("two\nlines\tand a tab"),
        Value(std::string(5000, 'x')),
        Value("\x01\x7f"),
        Value("e\xcc\x81\xe2\x80\x8f"),
    };
    return values;
}

const Array& oddValues() {
    static const Array values{Value(),     Value(true),         Value(-1),
                              Value(2),    Value(1e308),        Value("yes"),
                              Value(""),   Value(Array{1, {}}), Value(Dictionary{{"a", 1}}),
                              Value(0.25), Value(INT64_MIN)};
    return values;
}

const Array& deviceChanges() {
    static const Array values{
        Value(Dictionary()),
        Value(Dictionary{{"darkMode", true}}),
        Value(Dictionary{{"darkMode", false}}),
        Value(Dictionary{{"languages", "de"}}),
        Value(Dictionary{{"languages", "ar"}}),
        Value(Dictionary{{"languages", "ja,en"}}),
        Value(Dictionary{{"languages", "xx"}}),
        Value(Dictionary{{"languages", "en"}}),
        Value(Dictionary{{"idiom", "pad"}}),
        Value(Dictionary{{"idiom", "phone"}}),
        Value(Dictionary{{"scale", 3}}),
        Value(Dictionary{{"scale", 1}, {"systemVersion", "9.3"}}),
        Value(Dictionary{{"systemVersion", "13.0"}}),
        Value(Dictionary{{"clock", "2026-12-31T23:59:50"}}),
        Value(Dictionary{{"clock", "2026-03-29T01:59:00"}}),
        Value(Dictionary{{"clock", "system"}}),
        Value(Dictionary{{"statusBarLibrary", false}}),
        Value(Dictionary{{"statusBarLibrary", true}}),
        Value(Dictionary{{"toneController", "none"}}),
        Value(Dictionary{{"toneController", "ToneController,SHSToneController"}}),
        Value(Dictionary{{"toneController", "PSUIToneController"}}),
        Value(Dictionary{{"mailAccount", "somebody@example.org"}}),
        Value(Dictionary{{"mailAccount", ""}}),
        Value(Dictionary{{"twitterApp", true}}),
        Value(Dictionary{{"darkMode", "perhaps"}}),
        Value(Dictionary{{"colour", "red"}, {"darkMode", true}}),
        Value(Dictionary{{"idiom", Array{Dictionary()}}}),
    };
    return values;
}

constexpr std::array<std::string_view, 12> badLines{
    "",
    "{",
    "[]",
    "null",
    "{\"do\":5}",
    "{\"do\":\"nothing\"}",
    "{\"do\":\"tap\"}",
    "{\"do\":\"tap\",\"row\":\"0\"}",
    "{\"do\":\"state\",\"from\":-1}",
    "{\"do\":\"state\",\"id\":{}}",
    "{\"do\":\"sta\xff\"}",
    "[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[",
};

/// Milliseconds.
constexpr std::array<std::int64_t, 5> times{1, 400, 2'000, 61'000, 7'200'000};
constexpr std::array<double, 5> advances{0.0, 0.5, 61.0, 86'400.0, 1e12};

}  // namespace

ExploredStep StepChoice::next(const Value& state, const KnownPhone& known) {
    lastLabel_.clear();
    const auto kind = chance_.below(100);
    if (kind < 68) return press(state);
    if (kind < 79) return fromOutside(known);
    if (kind < 84) return changeOfDevice();
    if (kind < 89) return fault(state);
    if (kind < 93) return look(state);
    if (kind < 96) return {ExploredStep::Time{chance_.of(std::span<const std::int64_t>(times))}};
    return misuse(state);
}

ExploredStep StepChoice::press(const Value& state) {
    const Value screen = state["screen"];
    Candidates candidates;
    const bool isCovered = !state["presented"].isNil();
    if (isCovered) addPresented(candidates, state["presented"]);
    // What lies beneath is pressed too, now and then: it has to be refused.
    if (!isCovered || chance_.percent(10)) {
        addRows(candidates, screen);
        addScreen(candidates, screen);
    }
    if (candidates.empty()) return stepOf({{"do", "open"}});
    return aimedSomehow(pick(std::move(candidates), text(screen["class"])));
}

void StepChoice::noteState(const Value& state) {
    const std::string screen = text(state["screen"]["class"]);
    ++screens_[screen];
    if (!lastLabel_.empty()) leads_[lastLabel_] = screen;
}

ExploredStep StepChoice::pick(Candidates candidates, const std::string& screen) {
    double sum = 0;
    for (Candidate& each : candidates) {
        each.label = screen + " " + each.label;
        const auto done = done_.find(each.label);
        double weight = each.weight / (1.0 + (done == done_.end() ? 0.0 : 0.5 * done->second));
        if (const auto leads = leads_.find(each.label); leads != leads_.end() && leads->second != screen)
            weight += each.weight * 4.0 / (1.0 + 0.2 * screens_[leads->second]);
        each.weight = weight;
        sum += weight;
    }
    double left = chance_.part() * sum;
    auto chosen = candidates.begin();
    for (; chosen + 1 != candidates.end() && left >= chosen->weight; ++chosen) left -= chosen->weight;
    lastLabel_ = chosen->label;
    ++done_[lastLabel_];
    return std::move(chosen->step);
}

void StepChoice::addRows(Candidates& candidates, const Value& screen) {
    const Array* rows = screen["rows"].array();
    if (!rows) return;
    for (std::size_t i = 0; i < rows->size() && i < mostRows; ++i) {
        const Value& row = (*rows)[i];
        const MeantRow meant{row["index"].integer().value_or(0), text(row["name"]), text(row["identifier"])};
        const std::string label = meant.identifier.empty() ? meant.name : meant.identifier;
        if (row["row"].isNil()) {
            candidates.push_back({rowStep({{"do", "tap"}}, meant), "group", 0.02});
            continue;
        }
        const bool isTappable = row["tappable"].isTrue();
        candidates.push_back({rowStep({{"do", "tap"}}, meant), "tap " + label, isTappable ? 3.0 : 0.1});
        if (row["editingStyle"].integer().value_or(0) != 0)
            candidates.push_back({rowStep({{"do", "delete"}}, meant), "delete " + label, 0.6});
        addValues(candidates, row, meant);
    }
}

void StepChoice::addValues(Candidates& candidates, const Value& row, const MeantRow& meant) {
    const Value value = row["value"];
    const std::string label = "set " + (meant.identifier.empty() ? meant.name : meant.identifier);
    const auto add = [&](const Value& wanted, const std::string& which, double weight) {
        candidates.push_back({rowStep({{"do", "set"}, {"value", wanted}}, meant), label + which, weight});
    };
    // Where nothing can be set, that has to be refused.
    add(chance_.of(std::span<const Value>(oddValues())), " odd", row["set"].isNil() ? 0.05 : 0.3);
    if (row["set"].isNil()) return;
    if (const auto on = value.boolean()) {
        add(!*on, on.value() ? " off" : " on", 2.0);
        add(*on, " same", 0.2);
    } else if (value.number()) {
        const double least = row["properties"]["min"].number().value_or(0);
        const double most = row["properties"]["max"].number().value_or(1);
        const std::array<double, 5> places{least, most, least + (most - least) * chance_.part(), most + 1,
                                           least - 1};
        add(chance_.of(std::span<const double>(places)), " number", 2.0);
    } else {
        add(chance_.of(std::span<const Value>(texts())), " text", 2.0);
    }
}

void StepChoice::addScreen(Candidates& candidates, const Value& screen) {
    const Value bar = screen["bar"];
    for (const char* side : {"left", "right"}) {
        const Array* items = bar[side].array();
        for (std::size_t i = 0; items && i < items->size(); ++i) {
            candidates.push_back({stepOf({{"do", "bar"}, {"side", side}, {"item", i}}),
                                  std::string("bar ") + side + std::to_string(i), 2.0});
        }
    }
    if (!bar["back"].isNil()) candidates.push_back({stepOf({{"do", "back"}}), "back", 1.5});
    const Array* links = screen["links"].array();
    for (std::size_t i = 0; links && i < links->size(); ++i)
        candidates.push_back({stepOf({{"do", "link"}, {"item", i}}), "link " + std::to_string(i), 2.0});
    if (!screen["pane"].isNil()) {
        candidates.push_back(
            {stepOf({{"do", "pickTimeRow"}, {"row", chance_.below(2)}}), "pickTimeRow", 2.0});
        constexpr std::array<const char*, 6> picked{"5:00 PM",  "12:00 AM", "11:59 PM",
                                                    "12:00 PM", "25:00 PM", ""};
        candidates.push_back(
            {stepOf({{"do", "pickTime"}, {"time", picked[chance_.below(picked.size())]}}), "pickTime", 2.0});
    }
    if (const Array* tones = screen["tones"]["list"].array()) {
        Value identifier = "texttone:Nobody";
        if (chance_.percent(20))
            identifier = nullptr;
        else if (!tones->empty())
            identifier = (*tones)[chance_.below(tones->size())]["identifier"];
        candidates.push_back({stepOf({{"do", "pickTone"}, {"identifier", identifier}}), "pickTone", 3.0});
    }
    const bool isEditing = screen["editing"].isTrue();
    candidates.push_back({stepOf({{"do", "edit"}, {"on", !isEditing}}), "edit", 0.2});
    candidates.push_back({stepOf({{"do", "open"}}), "open", 0.2});
}

void StepChoice::addPresented(Candidates& candidates, const Value& presented) {
    const std::string kind = text(presented["kind"]);
    const std::string about = text(presented["title"]) + text(presented["message"]);
    const Array* actions = presented["actions"].array();
    for (std::size_t i = 0; actions && i < actions->size(); ++i) {
        const Value title = (*actions)[i]["title"];
        candidates.push_back(
            {stepOf({{"do", "choose"}, {"action", title}}), "choose " + about + " " + text(title), 3.0});
    }
    if (kind == "mail" || kind == "social") {
        for (const char* result : {"sent", "saved", "cancelled", "failed"})
            candidates.push_back({stepOf({{"do", "compose"}, {"result", result}}), kind + " " + result, 2.0});
    }
    candidates.push_back({stepOf({{"do", "choose"}, {"action", "Nothing"}}), "choose nothing", 0.2});
    candidates.push_back({stepOf({{"do", "open"}}), "open", 0.2});
}

ExploredStep StepChoice::fromOutside(const KnownPhone& known) {
    const std::span<const std::string> paths(known.storedPaths);
    const std::span<const std::string> names(known.names);
    switch (chance_.below(8)) {
        case 0:
        case 1:
        case 2:
            if (!paths.empty()) {
                const auto kind = static_cast<FileEditKind>(chance_.below(fileEditKinds));
                return {ExploredStep::FileChanged{chance_.of(paths), {kind, chance_.below(UINT32_MAX)}}};
            }
            break;
        case 3:
            machine_ = chance_.below(exploredMachines);
            return {ExploredStep::Machine{machine_}};
        case 4:
            return stepOf({{"do", "kill"}, {"process", chance_.percent(90) ? "SpringBoard" : "Nobody"}});
        case 5:
            if (!names.empty()) return stepOf({{"do", "postLocal"}, {"name", chance_.of(names)}});
            break;
        default:
            break;
    }
    if (names.empty()) return {ExploredStep::Notified{"com.example.nobody"}};
    return {ExploredStep::Notified{chance_.of(names)}};
}

ExploredStep StepChoice::changeOfDevice() {
    if (chance_.percent(30)) return stepOf({{"do", "dark"}, {"on", chance_.percent(50)}});
    if (chance_.percent(20)) {
        return stepOf({{"do", "advance"}, {"seconds", chance_.of(std::span<const double>(advances))}});
    }
    return stepOf({{"do", "device"}, {"set", chance_.of(std::span<const Value>(deviceChanges()))}});
}

ExploredStep StepChoice::fault(const Value& state) {
    const Array* active = state["faults"].array();
    if (active && !active->empty() && chance_.percent(60)) return stepOf({{"do", "fault"}, {"clear", true}});
    const auto names = device::Faults::names();
    const std::string_view kind = chance_.of(std::span<const std::string_view>(names));
    // Who wants a lock waits for it in real time.
    if (kind == device::Faults::nameOf(device::Fault::ProfilesLocked) && !chance_.percent(5))
        return stepOf({{"do", "fault"}, {"kind", kind}, {"on", false}});
    if (kind == device::Faults::nameOf(device::Fault::Slow))
        return stepOf({{"do", "fault"}, {"kind", kind}, {"milliseconds", chance_.percent(90) ? 0 : -1}});
    return stepOf({{"do", "fault"}, {"kind", kind}});
}

ExploredStep StepChoice::look(const Value& state) {
    const Value screen = state["screen"];
    switch (chance_.below(5)) {
        case 0:
            return stepOf({{"do", "state"}, {"from", chance_.below(5)}, {"count", chance_.below(7)}});
        case 1: {
            const Array* rows = screen["rows"].array();
            std::string name = "e";
            if (rows && !rows->empty()) name = text((*rows)[chance_.below(rows->size())]["name"]);
            return stepOf({{"do", "find"}, {"text", name}});
        }
        case 2:
            return stepOf({{"do", "files"}});
        case 3:
            return stepOf({{"do", "wait"}, {"event", "write"}, {"seconds", 2}});
        default:
            return stepOf({{"do", "state"}});
    }
}

ExploredStep StepChoice::misuse(const Value& state) {
    if (chance_.percent(40))
        return {ExploredStep::Line{std::string(chance_.of(std::span<const std::string_view>(badLines)))}};
    const auto kind = chance_.below(4);
    if (kind == 0) return rowStep({{"do", "tap"}}, {1'000'000 - 1, "no such row", "no such row"});
    if (kind == 1) return rowStep({{"do", "set"}, {"value", true}}, {-1, "no such row", "no such row"});
    if (kind == 2) {
        // Nothing on the screen takes these just now.
        constexpr std::array<const char*, 4> misplaced{"pickTone", "compose", "choose", "delete"};
        return stepOf({{"do", misplaced[chance_.below(misplaced.size())]}});
    }
    ExploredStep step = press(state);
    if (auto* command = std::get_if<Command>(&step.what))
        command->aim = command->row && chance_.percent(50) ? Aim::OtherKey : Aim::OtherScreen;
    return step;
}

ExploredStep StepChoice::aimedSomehow(ExploredStep step) {
    if (auto* command = std::get_if<Command>(&step.what)) {
        command->aim = chance_.percent(60) ? Aim::Present : Aim::Place;
        if (chance_.percent(5)) command->fields["id"] = chance_.below(1000);
    }
    return step;
}

}  // namespace settings
