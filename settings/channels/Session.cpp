// SPDX-License-Identifier: MIT
#include "settings/channels/Session.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <utility>

#include "platform/foundation/Journal.h"
#include "platform/foundation/RunLoop.h"
#include "settings/application/TopScreen.h"
#include "settings/channels/JSON.h"
#include "settings/commands/CommandAim.h"
#include "settings/commands/Commands.h"
#include "settings/state/DeviceWriter.h"

namespace settings {

using platform::Dictionary;
using platform::failure;
using platform::Result;
using platform::RunLoop;
using platform::Value;
using std::chrono::steady_clock;

namespace {

std::string withoutBraces(const std::string& object) {
    return object.substr(1, object.size() - 2);
}

/// Commands that only look.
constexpr std::array<std::string_view, 4> looks{"state", "find", "files", "wait"};

Result<RowWindow> windowOf(const CommandFields& fields, RowWindow window) {
    for (const auto& [key, bound] : {std::pair{"from", &window.from}, std::pair{"count", &window.count}}) {
        if (!fields.has(key)) continue;
        const Result<std::int64_t> given = fields.index(key);
        if (!given) return std::unexpected(given.error());
        *bound = *given;
    }
    return window;
}

Result<CommandFields> fieldsOf(std::string_view line) {
    if (line.size() > Session::maximumLineLength) {
        return failure("The line is longer than " + std::to_string(Session::maximumLineLength) + " bytes.");
    }
    const Result<Value> json = parseJSON(line);
    if (!json) return std::unexpected(json.error());
    if (!json->dictionary()) return failure("The line is no JSON object.");
    return CommandFields(*json->dictionary());
}

std::optional<std::uint64_t> numberOnTop() {
    const TopScreen top = TopScreen::now();
    if (!top.screen) return std::nullopt;
    return top.screen->number();
}

}  // namespace

std::string Session::answer(std::string_view line) {
    auto done = begin(line);
    while (!done) {
        // Counted before it is looked at: what comes in between ends the waiting at once.
        const auto counted = platform::Journal::shared().count();
        done = resume();
        if (done) break;
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(waiting_->deadline - time_());
        const auto somethingHappened = [&] { return platform::Journal::shared().count() != counted; };
        // Time is over, or the loop was stopped: one last look.
        if (!RunLoop::main().runUntil(somethingHappened, left)) waiting_->deadline = time_();
    }
    return std::move(*done);
}

std::optional<std::string> Session::begin(std::string_view line) {
    application_.events().collect();
    application_.events().trim();
    const Result<CommandFields> command = fieldsOf(line);
    const Value cause =
        causeOfCommand(reader_.connection, ++commands_, command ? command->value("id") : Value());
    const platform::Journal::Causing causing(cause);
    Dictionary head;
    const Outcome<Acted> done = execute(command, head);
    if (!waiting_) return answerText(std::move(head), done);
    waiting_->head = std::move(head);
    waiting_->cause = cause;
    return resume();
}

std::optional<std::string> Session::resume() {
    // Events are taken only when nothing is in flight: one that was begun has its outcome then.
    RunLoop::main().drain();
    EventLog& events = application_.events();
    events.collect();
    const bool came = events.holdsSince(waiting_->from, waiting_->kind, waiting_->name);
    waiting_->from = events.end();
    if (!came && time_() < waiting_->deadline) return std::nullopt;
    Wait wait = *std::exchange(waiting_, std::nullopt);
    const platform::Journal::Causing causing(wait.cause);
    if (came) return answerText(std::move(wait.head), Acted::No);
    return answerText(std::move(wait.head),
                      failure("No event \"" + wait.kind + "\"" +
                              (wait.name ? " named \"" + *wait.name + "\"" : "") + " came."));
}

std::optional<steady_clock::time_point> Session::waitsUntil() const {
    if (!waiting_) return std::nullopt;
    return waiting_->deadline;
}

std::string Session::answerToOversizedLine() {
    ++commands_;
    return answerText({},
                      failure("The line is longer than " + std::to_string(maximumLineLength) + " bytes."));
}

std::optional<std::string> Session::push() {
    if (!hasAnswered_) return std::nullopt;
    Look now = look();
    if (now.events.events.empty() && now.hash == seenHash_) return std::nullopt;
    return "{\"state\":" + stateText(std::move(now), Acted::No) + "}";
}

Outcome<Session::Acted> Session::execute(const Result<CommandFields>& command, Dictionary& head) {
    if (!command) return std::unexpected(command.error());
    const CommandFields& fields = *command;
    if (fields.has("id")) {
        const Value given = fields.value("id");
        if (!given.string() && (given.boolean() || !given.number())) {
            return failure("\"id\" must be a text or a number.");
        }
        head["id"] = given;
    }
    const Result<std::string> name = fields.text("do");
    if (!name) return std::unexpected(name.error());
    RowWindow window;
    // Who searches looks at names only; rows that are described have their cells made.
    if (*name == "find") window.count = 0;
    screenBefore_ = numberOnTop();
    if (const Result<void> taken = takeWishes(fields, window); !taken) return std::unexpected(taken.error());
    if (const Outcome<void> aimed = checkAim(fields); !aimed) return std::unexpected(aimed.error());
    Outcome<Dictionary> done =
        *name == "wait" ? beginWait(fields) : performCommand(application_, *name, fields);
    if (!done) return std::unexpected(done.error());
    head.merge(*done);
    return std::ranges::find(looks, *name) == looks.end() ? Acted::Yes : Acted::No;
}

Result<void> Session::takeWishes(const CommandFields& fields, RowWindow window) {
    const Result<RowWindow> here = windowOf(fields, window);
    if (!here) return std::unexpected(here.error());
    std::optional<RowWindow> elsewhere;
    if (fields.has("elsewhere")) {
        const Value given = fields.value("elsewhere");
        if (!given.dictionary()) return failure("\"elsewhere\" must be an object.");
        const Result<RowWindow> there = windowOf(CommandFields(*given.dictionary()), {});
        if (!there) return std::unexpected(there.error());
        elsewhere = *there;
    }
    bool tellsEvents = tellsEvents_;
    bool tellsCalls = reader_.calls;
    if (fields.has("events")) {
        tellsCalls = fields.value("events") == Value("all");
        const Result<bool> given = tellsCalls ? true : fields.boolean("events");
        if (!given) return failure("\"events\" must be true, false or \"all\".");
        tellsEvents = *given;
    }
    tellsEvents_ = tellsEvents;
    reader_.calls = tellsCalls;
    elsewhere_ = elsewhere;
    windowMoved_ = *here != window_;
    window_ = *here;
    return {};
}

Outcome<Dictionary> Session::beginWait(const CommandFields& fields) {
    const Result<std::string> kind = fields.text("event");
    if (!kind) return std::unexpected(kind.error());
    const Result<std::optional<std::string>> name = fields.optionalText("name");
    if (!name) return std::unexpected(name.error());
    const Result<double> seconds = fields.seconds("seconds");
    if (!seconds) return std::unexpected(seconds.error());
    const std::chrono::duration<double> longest = longestWait_;
    const auto time = std::chrono::ceil<std::chrono::milliseconds>(
        std::min(std::chrono::duration<double>(*seconds), longest));
    waiting_ = Wait{{}, *kind, *name, time_() + time, answeredUpTo_, {}};
    return Dictionary();
}

std::string Session::answerText(Dictionary head, const Outcome<Acted>& done) {
    RunLoop::main().drain();
    if (elsewhere_ && screenBefore_ != numberOnTop()) {
        window_ = *elsewhere_;
        // Another screen is a change, whatever its rows.
        windowMoved_ = false;
    }
    elsewhere_.reset();
    head["ok"] = done.has_value();
    if (!done) {
        head["error"] = done.error().error.localizedDescription;
        if (done.error().kind == Refusal::Kind::Stale) head["stale"] = true;
    }
    std::string state = stateText(look(), done.value_or(Acted::No));
    answeredUpTo_ = eventsFrom_;
    hasAnswered_ = true;
    return "{" + withoutBraces(jsonText(head)) + ",\"state\":" + std::move(state) + "}";
}

Session::Look Session::look() {
    Look look;
    look.body = jsonText(writer_.state(window_));
    const DeviceWriter device(application_);
    // The time that passes is no change.
    look.hash = std::hash<std::string>{}(look.body + jsonText(device.lasting()));
    look.device = device.now();
    // After the state was written: looking at a row may have made something happen.
    application_.events().collect();
    if (tellsEvents_) look.events = application_.events().since(eventsFrom_, reader_);
    return look;
}

std::string Session::stateText(Look look, Acted acted) {
    // Other rows of the same screen are no change of it.
    const bool looksOther = windowMoved_ ? acted == Acted::Yes : look.hash != seenHash_;
    // When another session has seen a change since, it is taken for the same one.
    if ((looksOther || !look.events.events.empty()) && application_.revision() == seenRevision_) {
        application_.raiseRevision();
    }
    windowMoved_ = false;
    seenRevision_ = application_.revision();
    seenHash_ = look.hash;
    eventsFrom_ = application_.events().end();
    Dictionary own{{"protocol", 1},
                   {"revision", seenRevision_},
                   {"device", std::move(look.device)},
                   {"events", std::move(look.events.events)}};
    if (look.events.dropped > 0) own["droppedEvents"] = look.events.dropped;
    return "{" + withoutBraces(jsonText(own)) + "," + withoutBraces(look.body) + "}";
}

}  // namespace settings
