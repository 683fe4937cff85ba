// SPDX-License-Identifier: MIT
#include "settings/watching/ProgramRelay.h"

#include <algorithm>
#include <utility>

#include "platform/foundation/LogSink.h"
#include "platform/foundation/RunLoop.h"

namespace settings {

using platform::Dictionary;
using platform::Value;
using std::chrono::steady_clock;

namespace {

/// On a machine that is busy building, and with sanitizers.
constexpr std::chrono::seconds startPatience{60};
/// A program that hangs in a press is not waited for longer.
constexpr std::chrono::seconds leavePatience{5};
/// Who ends sooner after beginning to serve would do so again.
constexpr std::chrono::seconds steady{1};

}  // namespace

ProgramRelay::ProgramRelay(Options options, Events events)
    : options_(std::move(options)), events_(std::move(events)) {}

ProgramRelay::~ProgramRelay() {
    for (auto* program : {&successor_, &serving_}) {
        if (*program) (*program)->endSoon();
    }
    for (const auto& program : leaving_) program->endSoon();
}

void ProgramRelay::renew() {
    if (isBeyondRecall()) return;
    dropSuccessor();
    startSuccessor();
}

void ProgramRelay::tell(Dictionary build) {
    build_ = std::move(build);
    if (serving_) serving_->say({{"build", build_}});
}

void ProgramRelay::startSuccessor() {
    const std::uint64_t number = ++lastNumber_;
    auto started = ServedProgram::start(options_.arguments, options_.listener,
                                        {[this, number](const Value& message) { heard(number, message); },
                                         [this, number](const std::string& how) { ended(number, how); }});
    if (!started) return refuse(started.error().localizedDescription);
    successor_ = *std::move(started);
    successorNumber_ = number;
    stage_ = Stage::Loading;
    deadline_.set(startPatience);
}

void ProgramRelay::dropSuccessor() {
    deadline_.cancel();
    stage_ = Stage::None;
    discard(std::move(successor_));
}

void ProgramRelay::heard(std::uint64_t number, const Value& message) {
    if (successor_ && number == successorNumber_) {
        if (stage_ == Stage::Loading && message["ready"].isTrue()) successorReady(message);
        if (stage_ == Stage::Opening && message["serving"].isTrue()) successorServes();
    } else if (serving_ && number == servingNumber_ && !message["handover"].isNil()) {
        // The one that has asked may have ended, and another one be on its way.
        given_ = message["handover"];
        leaving_.push_back(std::move(serving_));
        if (stage_ == Stage::Asking) go();
    }
}

void ProgramRelay::ended(std::uint64_t number, const std::string& how) {
    if (successor_ && number == successorNumber_) return successorEnded(how);
    if (serving_ && number == servingNumber_) return servingEnded(how);
    const auto left =
        std::ranges::find_if(leaving_, [](const auto& program) { return !program->isRunning(); });
    if (left == leaving_.end()) return;
    discard(std::move(*left));
    leaving_.erase(left);
}

void ProgramRelay::successorReady(const Value& message) {
    const Value problem = message["problem"];
    successorHasProblem_ = !problem.isNil();
    // An error's screen takes the place of nothing but another error's.
    if (successorHasProblem_ && serving_ && !servingHasProblem_ && !given_) return refuse(problem.stringOr());
    if (!serving_) return go();
    stage_ = Stage::Asking;
    deadline_.set(leavePatience);
    serving_->say({{"leave", true}});
}

void ProgramRelay::go() {
    if (secret_.empty()) {
        auto secret = options_.secret();
        if (!secret) return refuse(secret.error().localizedDescription);
        secret_ = *std::move(secret);
    }
    stage_ = Stage::Opening;
    deadline_.set(startPatience);
    successor_->say({{"go", Dictionary{{"secret", secret_},
                                       {"handover", given_.value_or(Value())},
                                       {"pathEnded", pathEnded_ ? Value(*pathEnded_) : Value()},
                                       {"build", build_}}}});
}

void ProgramRelay::successorServes() {
    deadline_.cancel();
    stage_ = Stage::None;
    given_.reset();
    pathEnded_.reset();
    serving_ = std::move(successor_);
    servingNumber_ = successorNumber_;
    servingHasProblem_ = successorHasProblem_;
    servingSince_ = steady_clock::now();
    // What was told while it was on its way.
    serving_->say({{"build", build_}});
    events_.serving();
}

void ProgramRelay::successorEnded(const std::string& how) {
    const Stage stage = stage_;
    dropSuccessor();
    if (stage == Stage::Opening && given_ && !given_->isNil()) {
        // The old one is gone, and the new one could be started: only not with these screens.
        given_ = Value();
        pathEnded_ = "The screen could not be opened again: the program " + how + ".";
        return startSuccessor();
    }
    // It is asked to leave already.
    if (stage == Stage::Asking) return startSuccessor();
    refuse("The new program " + how + ".");
}

void ProgramRelay::servingEnded(const std::string& how) {
    discard(std::move(serving_));
    pathEnded_ = "The program " + how + ", and was started again.";
    platform::log("The program " + how + ".");
    if (stage_ == Stage::Asking) return go();
    if (isRenewing()) return;
    if (steady_clock::now() - servingSince_ < steady) return refuse("The program " + how + ".");
    startSuccessor();
}

void ProgramRelay::refuse(const std::string& reason) {
    dropSuccessor();
    if (serving_) return events_.refused(reason);
    given_.reset();
    pathEnded_.reset();
    events_.down(reason);
}

void ProgramRelay::late() {
    if (stage_ == Stage::Asking) {
        discard(std::move(serving_));
        pathEnded_ = "The program before did not answer any more.";
        return go();
    }
    successorEnded("did not begin within " + std::to_string(startPatience.count()) + " seconds");
}

void ProgramRelay::discard(std::unique_ptr<ServedProgram> program) {
    if (!program) return;
    discarded_.push_back(std::move(program));
    // Not from within its own call.
    platform::dispatchMain([this] { discarded_.clear(); });
}

}  // namespace settings
