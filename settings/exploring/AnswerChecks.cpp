// SPDX-License-Identifier: MIT
#include "settings/exploring/AnswerChecks.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <set>
#include <string_view>
#include <utility>

#include "settings/channels/JSON.h"
#include "settings/recording/AnswerDifference.h"

namespace settings {

using platform::Array;
using platform::Dictionary;
using platform::Value;

namespace {

constexpr std::array<std::string_view, 5> looks{"state", "find", "files", "wait", "advance"};
/// That a command was refused may be said.
constexpr std::array<std::string_view, 2> spoken{"log", "call"};

template <class List>
bool holds(const List& list, std::string_view what) {
    return std::ranges::find(list, what) != list.end();
}

Breach answerBreach(std::string subject, std::string text) {
    return {"answer", std::move(subject), std::move(text)};
}

std::string nameOfRowIn(const Value& row) {
    const std::string identifier = row["identifier"].stringOr();
    return identifier.empty() ? row["name"].stringOr("?") : identifier;
}

/// What the user sees: a state without what tells how it came about.
Dictionary seen(const Value& state) {
    Dictionary fields = *state.dictionary();
    for (const char* each : {"events", "revision", "droppedEvents"}) fields.erase(each);
    return fields;
}

/// The difference is told from the state before to that of now.
std::optional<AnswerDifference> seenDifference(const Value& before, const Value& now) {
    Dictionary was = seen(before);
    Dictionary is = seen(now);
    // Two windows of one list are no difference.
    const Array* rowsBefore = before["screen"]["rows"].array();
    const Array* rowsNow = now["screen"]["rows"].array();
    if (rowsBefore && rowsNow && rowsBefore->size() != rowsNow->size() &&
        before["screen"]["count"] == now["screen"]["count"]) {
        for (Dictionary* each : {&was, &is}) {
            Dictionary screen = *(*each)["screen"].dictionary();
            screen.erase("rows");
            (*each)["screen"] = std::move(screen);
        }
    }
    return firstDifference(was, is);
}

std::string told(const AnswerDifference& difference) {
    return difference.path + " was " + difference.was + " and is " + difference.is;
}

/// The path without the numbers, so that one mistake has one name.
std::string fieldOf(const AnswerDifference& difference) {
    std::string field = difference.path;
    std::erase_if(field, [](char c) { return c >= '0' && c <= '9'; });
    return field;
}

std::optional<Breach> checkRows(const Value& screen) {
    const Array* rows = screen["rows"].array();
    if (!rows) return answerBreach("rows", "The state of a screen has no rows.");
    if (static_cast<std::int64_t>(rows->size()) > screen["count"].integer().value_or(-1))
        return answerBreach("count", "The screen has more rows than it counts.");
    std::set<std::string> keys;
    std::optional<std::int64_t> index;
    for (const Value& row : *rows) {
        if (!row["key"].string() || !keys.insert(*row["key"].string()).second)
            return answerBreach("key", "Two rows have the key " + jsonText(row["key"]) + ".");
        const auto here = row["index"].integer();
        if (!here || (index && *here != *index + 1))
            return answerBreach("index",
                                "The row \"" + nameOfRowIn(row) + "\" is not behind the one before.");
        index = here;
    }
    return std::nullopt;
}

/// Whether anything came of the command that tells that the row may show something else than was set.
bool tellsOtherwise(const Value& state) {
    constexpr std::array<std::string_view, 9> telling{"insert",  "remove",  "reload", "push",   "pop",
                                                      "present", "dismiss", "log",    "process"};
    for (const Value& event : *state["events"].array()) {
        if (holds(telling, event["event"].stringOr()) || event["ok"] == Value(false)) return true;
    }
    return !state["presented"].isNil() || !state["faults"].array()->empty();
}

bool shows(const Value& row, const Value& value) {
    if (row["value"] == value) return true;
    if (value.string()) return row["text"] == value;
    const auto wanted = value.number();
    const auto shown = row["value"].number();
    if (!wanted || !shown) return false;
    // A slider has single precision, and ends.
    const double least = row["properties"]["min"].number().value_or(0);
    const double most = row["properties"]["max"].number().value_or(1);
    const double possible = std::clamp(*wanted, std::min(least, most), std::max(least, most));
    constexpr double precision = 1e-6;
    return std::abs(possible - *shown) <= precision * std::max(1.0, std::abs(possible));
}

const Value* rowWithKey(const Value& screen, const Value& key) {
    const Array* rows = screen["rows"].array();
    if (!rows) return nullptr;
    const auto found = std::ranges::find_if(*rows, [&](const Value& row) { return row["key"] == key; });
    return found == rows->end() ? nullptr : &*found;
}

}  // namespace

std::optional<Breach> AnswerChecks::check(const AskedCommand& asked, const Value& answer) {
    std::optional<Breach> breach = checkForm(asked, answer);
    if (!breach) breach = checkEvents(answer["state"]);
    if (!breach && answer["ok"] == Value(false)) breach = checkRefusal(asked, answer);
    if (!breach) breach = checkLook(asked, answer);
    if (!breach) breach = checkSet(asked, answer);
    state_ = answer["state"];
    return breach;
}

std::optional<Breach> AnswerChecks::checkForm(const AskedCommand& asked, const Value& answer) const {
    const auto ok = answer["ok"].boolean();
    if (!ok) return answerBreach("ok", "The answer does not say whether the command was done.");
    const std::string error = answer["error"].stringOr();
    if (*ok != answer["error"].isNil())
        return answerBreach("error", *ok ? "The answer has an error although the command was done."
                                         : "The command was refused without an error.");
    if (!*ok && (error.find('\n') != std::string::npos || !error.ends_with('.')))
        return answerBreach("sentence", "The error is no sentence of one line: " + jsonText(error) + ".");
    if (asked.fields.contains("id") && answer["id"] != Value(asked.fields)["id"])
        return answerBreach("id", "The answer has another \"id\" than the command.");
    if (*ok && asked.fields.empty())
        return answerBreach("noCommand", "A line that is no command was not refused.");
    const bool isStale = answer["stale"] == Value(true);
    if (asked.isMisaimed && !isStale && answer["error"].isNil())
        return answerBreach("misaimed", "A press that names what is not there was not refused.");
    if (asked.isAimed && asked.isUndisturbed && isStale)
        return answerBreach("stale", "A press that names what the last answer told was refused: " + error);
    const Value& state = answer["state"];
    for (const char* field : {"screen", "events", "faults", "device", "revision"}) {
        if (state[field].isNil())
            return answerBreach(field, "The state has no \"" + std::string(field) + "\".");
    }
    if (!state_.isNil() && *state["revision"].integer() < *state_["revision"].integer())
        return answerBreach("revision", "The revision has gone back.");
    const Value screen = state["screen"];
    const Array* stack = screen["stack"].array();
    if (!stack || stack->empty() || stack->back() != screen["class"])
        return answerBreach("stack", "The screen is not the last one of its stack.");
    return checkRows(screen);
}

std::optional<Breach> AnswerChecks::checkEvents(const Value& state) {
    for (const Value& event : *state["events"].array()) {
        const auto id = event["id"].integer();
        const auto cause = event["cause"].integer();
        if (!id || *id <= lastEvent_)
            return answerBreach("eventOrder", "An event has come twice, or late: " + jsonText(event) + ".");
        if (cause && *cause >= *id)
            return answerBreach("eventCause", "An event stands before its cause: " + jsonText(event) + ".");
        lastEvent_ = *id;
    }
    return std::nullopt;
}

std::optional<Breach> AnswerChecks::checkRefusal(const AskedCommand& asked, const Value& answer) const {
    const std::string name = Value(asked.fields)["do"].stringOr();
    if (state_.isNil() || !asked.isUndisturbed || holds(looks, name)) return std::nullopt;
    for (const Value& event : *answer["state"]["events"].array()) {
        if (!holds(spoken, event["event"].stringOr()))
            return Breach{"refusedChanged", "event " + event["event"].stringOr(),
                          "A refused command had an effect: " + jsonText(event) + "."};
    }
    if (const auto difference = seenDifference(state_, answer["state"]))
        return Breach{"refusedChanged", fieldOf(*difference),
                      "A refused command changed something: " + told(*difference) + "."};
    return std::nullopt;
}

std::optional<Breach> AnswerChecks::checkLook(const AskedCommand& asked, const Value& answer) const {
    const std::string name = Value(asked.fields)["do"].stringOr();
    if (state_.isNil() || !asked.isUndisturbed || (name != "state" && name != "find" && name != "files"))
        return std::nullopt;
    const Value& state = answer["state"];
    if (state["events"].array()->empty()) {
        if (const auto difference = seenDifference(state_, state))
            return Breach{"looksDifferent", fieldOf(*difference),
                          "A second look sees something else although nothing has happened: " +
                              told(*difference) + "."};
    }
    const Array* rows = state["screen"]["rows"].array();
    for (const Value& row : *rows) {
        const Value* before = rowWithKey(state_["screen"], row["key"]);
        if (!before || !state["events"].array()->empty()) continue;
        if (const auto difference = firstDifference(*before, row))
            return Breach{"looksDifferent", "row." + fieldOf(*difference),
                          "The row \"" + nameOfRowIn(row) +
                              "\" of a part of the list is another than in the " +
                              "whole: " + told(*difference) + "."};
    }
    if (answer["found"].array()) {
        for (const Value& found : *answer["found"].array()) {
            const Value* before = rowWithKey(state_["screen"], found["key"]);
            if (before && (*before)["name"] != found["name"] && state["events"].array()->empty())
                return Breach{
                    "looksDifferent", "found",
                    "A row that was found has another name than the list shows: " + jsonText(found) + "."};
        }
    }
    return std::nullopt;
}

std::optional<Breach> AnswerChecks::checkSet(const AskedCommand& asked, const Value& answer) const {
    const Value fields(asked.fields);
    if (fields["do"] != Value("set") || answer["ok"] != Value(true) || state_.isNil() ||
        !asked.isUndisturbed || fields["key"].isNil())
        return std::nullopt;
    const Value& state = answer["state"];
    if (state["screen"]["id"] != state_["screen"]["id"] || tellsOtherwise(state)) return std::nullopt;
    const Value* row = rowWithKey(state["screen"], fields["key"]);
    if (!row || shows(*row, fields["value"])) return std::nullopt;
    return Breach{"notShown", state["screen"]["class"].stringOr() + " " + nameOfRowIn(*row),
                  "The row \"" + nameOfRowIn(*row) + "\" took " + jsonText(fields["value"]) + " and shows " +
                      jsonText((*row)["value"]) + ", and nothing tells why."};
}

}  // namespace settings
