// SPDX-License-Identifier: MIT
#include "settings/recording/RecordingViewer.h"

#include <cstdint>

#include "settings/channels/JSON.h"

namespace settings {

using platform::Array;
using platform::Dictionary;
using platform::failure;
using platform::Result;
using platform::Value;

namespace {

Result<CommandFields> commandIn(std::string_view line) {
    const Result<Value> json = parseJSON(line);
    if (!json) return std::unexpected(json.error());
    if (!json->dictionary()) return failure("The line is no JSON object.");
    return CommandFields(*json->dictionary());
}

}  // namespace

std::string RecordingViewer::answer(std::string_view line) {
    Dictionary answer;
    std::size_t shown = moments_.last();
    const Result<CommandFields> command = commandIn(line);
    if (command && command->has("id")) answer["id"] = command->value("id");
    Result<Dictionary> looked = command ? look(*command, shown) : std::unexpected(command.error());
    Result<Dictionary> state = moments_.state(shown);
    if (looked && state) {
        answer.merge(*looked);
    } else {
        answer["error"] = (looked ? state.error() : looked.error()).localizedDescription;
    }
    answer["ok"] = looked && state;
    if (state) {
        // They are told with what they came with.
        (*state)["events"] = Array();
        (*state)["recording"] = description(shown);
        // What has been does not go on.
        if (const auto device = state->find("device");
            device != state->end() && device->second.dictionary()) {
            Dictionary standing = *device->second.dictionary();
            standing["clockRuns"] = false;
            (*state)["device"] = std::move(standing);
        }
        answer["state"] = *std::move(state);
    }
    return jsonText(answer);
}

Result<Dictionary> RecordingViewer::look(const CommandFields& fields, std::size_t& shown) const {
    const Result<std::string> name = fields.text("do");
    if (!name) return std::unexpected(name.error());
    if (*name == "state") return Dictionary();
    if (*name == "moments") return list(fields);
    if (*name != "moment") {
        return failure(
            "This is a recording, to which nothing can be done: it answers \"state\", \"moments\" and "
            "\"moment\" only.");
    }
    const Result<std::size_t> at = place(fields, "at");
    if (!at) return std::unexpected(at.error());
    if (!moments_.hasState(*at))
        return failure("Moment " + std::to_string(*at) + " has no state of its own.");
    shown = *at;
    return Dictionary();
}

Result<Dictionary> RecordingViewer::list(const CommandFields& fields) const {
    const Result<std::size_t> from = place(fields, "from");
    if (!from) return std::unexpected(from.error());
    Array moments;
    std::size_t bytes = 0;
    for (std::size_t at = *from; at < moments_.count() && moments.size() < mostMoments; ++at) {
        bytes += moments_.size(at);
        if (bytes > mostBytes && !moments.empty()) break;
        moments.push_back(moments_.moment(at));
    }
    return Dictionary{{"moments", std::move(moments)}};
}

Result<std::size_t> RecordingViewer::place(const CommandFields& fields, std::string_view key) const {
    const Result<std::int64_t> given = fields.index(key);
    if (!given) return std::unexpected(given.error());
    if (static_cast<std::uint64_t>(*given) < moments_.count()) return static_cast<std::size_t>(*given);
    return failure("\"" + std::string(key) + "\" must be below " + std::to_string(moments_.count()) +
                   ", which is how many moments there are.");
}

Dictionary RecordingViewer::description(std::size_t shown) const {
    return {{"file", moments_.name()},
            {"program", moments_.start().program},
            {"moments", moments_.count()},
            {"whole", moments_.isWhole()},
            {"shown", shown}};
}

}  // namespace settings
