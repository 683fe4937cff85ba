// SPDX-License-Identifier: MIT
#include "platform/foundation/RunLoop.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cassert>
#include <cerrno>
#include <cmath>
#include <compare>
#include <deque>
#include <map>
#include <mutex>
#include <system_error>
#include <thread>
#include <unordered_map>
#include <utility>
#include <vector>

#include "platform/foundation/Calendar.h"
#include "platform/foundation/Device.h"
#include "platform/foundation/Journal.h"

namespace platform {

namespace {

using std::chrono::milliseconds;
using Wait = std::optional<milliseconds>;  // empty: until woken

/// How soon a question that answered "something is on its way" is asked again when nothing wakes the loop.
constexpr milliseconds askAgain{10};
/// How many tasks may run before the watched descriptors are looked at.
constexpr int tasksBetweenDescriptors = 64;

Wait sooner(Wait a, Wait b) {
    if (!a) return b;
    if (!b) return a;
    return std::min(*a, *b);
}

/// A task beside what it comes of.
struct Given {
    RunLoop::Task task;
    JournalCause cause;
};

/// A task that throws has no caller who could handle it.
void runTask(const RunLoop::Task& task, JournalCause cause = {}) noexcept {
    const Journal::Causing causing(std::move(cause));
    task();
}

}  // namespace

struct RunLoop::State {
    struct TimerKey {
        Date instant;
        TimerId id;
        auto operator<=>(const TimerKey&) const = default;
    };
    struct Watch {
        int descriptor;
        std::shared_ptr<const Task> readable;
        Serve serve = Serve::ByRun;
    };
    struct Check {
        std::uint64_t id;
        std::shared_ptr<const std::function<bool()>> pending;
    };

    const std::thread::id mainThread = std::this_thread::get_id();
    std::array<int, 2> wakePipe{-1, -1};

    mutable std::mutex mutex;
    bool wakeSent = false;
    bool stopped = false;
    /// Grows with everything that drain() could have missed while it looked around without the lock.
    std::uint64_t changes = 0;
    std::uint64_t activities = 0;
    std::uint64_t nextId = 1;
    std::deque<Given> tasks;
    std::map<TimerKey, Given> timers;
    std::unordered_map<TimerId, Date> instants;
    std::vector<Watch> watches;
    std::vector<Check> checks;
    std::shared_ptr<const Task> beforeSleeping;
    /// A turn is the tasks and due timers that were there when it began, so that neither can starve the
    /// other.
    std::size_t tasksOfTurn = 0;
    TimerId timerLimitOfTurn = 0;

    State() {
        if (pipe2(wakePipe.data(), O_CLOEXEC | O_NONBLOCK) != 0)
            throw std::system_error(errno, std::system_category(), "The run loop has no pipe");
    }

    /// Called with the lock held after each change.
    void changed() {
        ++changes;
        if (std::exchange(wakeSent, true)) return;
        const char byte = 0;
        // The pipe is empty here, so the byte always fits.
        [[maybe_unused]] const ssize_t written = write(wakePipe[1], &byte, 1);
    }

    Given takeNext(Date now) {
        const std::lock_guard lock(mutex);
        for (int attempt = 0; attempt < 2; ++attempt) {
            if (tasksOfTurn > 0) {
                --tasksOfTurn;
                Given task = std::move(tasks.front());
                tasks.pop_front();
                return task;
            }
            if (const auto first = timers.begin();
                first != timers.end() && first->first.instant <= now && first->first.id < timerLimitOfTurn) {
                Given task = std::move(first->second);
                instants.erase(first->first.id);
                timers.erase(first);
                return task;
            }
            tasksOfTurn = tasks.size();
            timerLimitOfTurn = nextId;
        }
        return {};
    }

    bool runOne() {
        Given next = takeNext(dateNow());
        if (!next.task) return false;
        runTask(next.task, std::move(next.cause));
        return true;
    }

    std::optional<Date> firstInstant() const {
        const std::lock_guard lock(mutex);
        if (timers.empty()) return std::nullopt;
        return timers.begin()->first.instant;
    }

    /// How long until the earliest timer, rounded up so that the loop never wakes too early for it.
    Wait untilNextTimer() const {
        const std::optional<Date> instant = firstInstant();
        if (!instant) return std::nullopt;
        double seconds = instant->secondsSinceReference - dateNow().secondsSinceReference;
        if (const std::shared_ptr<Clock> clock = Device::current().clock) {
            const std::optional<double> wait = clock->secondsUntil(*instant);
            if (!wait) return std::nullopt;
            seconds = *wait;
        }
        constexpr double longestSeconds = 3600;
        return milliseconds(
            static_cast<std::int64_t>(std::ceil(std::clamp(seconds, 0.0, longestSeconds) * 1000)));
    }

    bool anyPending() const {
        std::vector<Check> present;
        {
            const std::lock_guard lock(mutex);
            present = checks;
        }
        return std::ranges::any_of(present, [](const Check& check) { return (*check.pending)(); });
    }

    /// Sleeps until something was posted, a watched descriptor is ready, or the time is over; gives the ready
    /// ones.
    std::vector<Watch> wait(Wait atMost, std::vector<Watch> watched) {
        std::vector<pollfd> descriptors{{wakePipe[0], POLLIN, 0}};
        for (const Watch& watch : watched) descriptors.push_back({watch.descriptor, POLLIN, 0});
        const int timeout = atMost ? static_cast<int>(std::max<std::int64_t>(atMost->count(), 0)) : -1;
        if (poll(descriptors.data(), descriptors.size(), timeout) <= 0) return {};
        if (descriptors[0].revents != 0) {
            std::array<char, 8> bytes{};
            while (read(wakePipe[0], bytes.data(), bytes.size()) > 0) continue;
            // In this order: a byte that is written now stays. What is posted in between writes none, but
            // whoever waited looks at the queue next.
            const std::lock_guard lock(mutex);
            wakeSent = false;
        }
        std::vector<Watch> ready;
        for (std::size_t i = 0; i < watched.size(); ++i) {
            if (descriptors[i + 1].revents != 0) ready.push_back(std::move(watched[i]));
        }
        return ready;
    }

    bool isWatched(const Watch& watch) const {
        const std::lock_guard lock(mutex);
        return std::ranges::any_of(watches,
                                   [&](const Watch& known) { return known.readable == watch.readable; });
    }

    bool takeStop() {
        const std::lock_guard lock(mutex);
        return std::exchange(stopped, false);
    }

    enum class Which { All, ServedAlways };
    /// Whether there was one to serve.
    bool serveDescriptors(Wait atMost, Which which) {
        std::vector<Watch> watched;
        {
            const std::lock_guard lock(mutex);
            watched = watches;
        }
        if (which == Which::ServedAlways)
            std::erase_if(watched, [](const Watch& watch) { return watch.serve != Serve::Always; });
        const std::vector<Watch> ready = wait(atMost, std::move(watched));
        for (const Watch& watch : ready) {
            // An earlier handler may have unwatched it.
            if (isWatched(watch)) runTask(*watch.readable);
        }
        return !ready.empty();
    }
};

RunLoop::RunLoop() : state_(std::make_unique<State>()) {}

RunLoop::~RunLoop() = default;

RunLoop& RunLoop::main() {
    // Never destroyed: background threads may still post while the process ends.
    static RunLoop& loop = *new RunLoop;
    return loop;
}

bool RunLoop::isCurrent() const {
    return std::this_thread::get_id() == state_->mainThread;
}

void RunLoop::post(Task task) {
    if (!task) return;
    JournalCause cause = Journal::presentCause();
    const std::lock_guard lock(state_->mutex);
    state_->tasks.push_back({std::move(task), std::move(cause)});
    state_->changed();
}

RunLoop::TimerId RunLoop::performAfterDelay(double seconds, Task task) {
    if (!task) return 0;
    const Date instant{dateNow().secondsSinceReference + (seconds > 0 ? seconds : 0)};
    JournalCause cause = Journal::presentCause();
    const std::lock_guard lock(state_->mutex);
    const TimerId id = state_->nextId++;
    state_->timers.emplace(State::TimerKey{instant, id}, Given{std::move(task), std::move(cause)});
    state_->instants.emplace(id, instant);
    state_->changed();
    return id;
}

void RunLoop::cancel(TimerId timer) {
    // Destroyed after the lock is given back: what the task owns may come back to the loop.
    Given cancelled;
    const std::lock_guard lock(state_->mutex);
    const auto instant = state_->instants.find(timer);
    if (instant == state_->instants.end()) return;
    const auto entry = state_->timers.find({instant->second, timer});
    cancelled = std::move(entry->second);
    state_->timers.erase(entry);
    state_->instants.erase(instant);
}

void RunLoop::watch(int descriptor, Task readable, Serve serve) {
    unwatch(descriptor);
    const std::lock_guard lock(state_->mutex);
    state_->watches.push_back({descriptor, std::make_shared<const Task>(std::move(readable)), serve});
    state_->changed();
}

void RunLoop::unwatch(int descriptor) {
    std::vector<State::Watch> removed;
    const std::lock_guard lock(state_->mutex);
    // What a handler owns is let go only when the mutex is free again.
    std::erase_if(state_->watches, [&](State::Watch& watch) {
        if (watch.descriptor != descriptor) return false;
        removed.push_back(std::move(watch));
        return true;
    });
}

void RunLoop::beginActivity() {
    const std::lock_guard lock(state_->mutex);
    ++state_->activities;
    state_->changed();
}

void RunLoop::endActivity() {
    const std::lock_guard lock(state_->mutex);
    // An activity of before a reset() ends without counting.
    if (state_->activities > 0) --state_->activities;
    state_->changed();
}

std::uint64_t RunLoop::addPendingCheck(std::function<bool()> pending) {
    const std::lock_guard lock(state_->mutex);
    const std::uint64_t id = state_->nextId++;
    state_->checks.push_back({id, std::make_shared<const std::function<bool()>>(std::move(pending))});
    state_->changed();
    return id;
}

void RunLoop::removePendingCheck(std::uint64_t id) {
    const std::lock_guard lock(state_->mutex);
    std::erase_if(state_->checks, [&](const State::Check& check) { return check.id == id; });
}

void RunLoop::drain() {
    assert(isCurrent());
    State& state = *state_;
    for (;;) {
        std::uint64_t seen = 0;
        {
            const std::lock_guard lock(state.mutex);
            seen = state.changes;
        }
        if (state.runOne()) continue;
        // Nothing was left a moment ago. That stands only if nothing changed while the checks were asked: an
        // activity that ended meanwhile may have sent something that a check would now tell of.
        const bool pending = state.anyPending();
        {
            const std::lock_guard lock(state.mutex);
            if (state.changes != seen) continue;
            if (state.activities == 0 && !pending) return;
        }
        state.serveDescriptors(sooner(pending ? Wait(askAgain) : Wait(), state.untilNextTimer()),
                               State::Which::ServedAlways);
    }
}

bool RunLoop::runUntil(const std::function<bool()>& until, std::chrono::milliseconds atMost) {
    assert(isCurrent());
    State& state = *state_;
    const auto deadline = std::chrono::steady_clock::now() + atMost;
    for (;;) {
        if (until()) return true;
        {
            const std::lock_guard lock(state.mutex);
            if (state.stopped) return false;
        }
        const auto left = std::chrono::ceil<milliseconds>(deadline - std::chrono::steady_clock::now());
        if (left.count() <= 0) return false;
        if (!state.runOne())
            state.serveDescriptors(sooner(std::min(left, askAgain), state.untilNextTimer()),
                                   State::Which::ServedAlways);
    }
}

void RunLoop::run() {
    assert(isCurrent());
    State& state = *state_;
    bool didSomething = false;
    for (;;) {
        int ran = 0;
        while (ran < tasksBetweenDescriptors && state.runOne()) ++ran;
        if (state.takeStop()) return;
        const bool nothingLeft = ran < tasksBetweenDescriptors;
        didSomething = didSomething || ran > 0;
        if (nothingLeft && std::exchange(didSomething, false)) {
            // Held while it runs: it may set another.
            if (const auto task = state.beforeSleeping) runTask(*task);
        }
        didSomething = state.serveDescriptors(nothingLeft ? state.untilNextTimer() : milliseconds(0),
                                              State::Which::All) ||
                       didSomething;
    }
}

void RunLoop::setBeforeSleeping(Task task) {
    state_->beforeSleeping = task ? std::make_shared<const Task>(std::move(task)) : nullptr;
}

void RunLoop::stop() {
    const std::lock_guard lock(state_->mutex);
    state_->stopped = true;
    state_->changed();
}

std::optional<Date> RunLoop::nextTimer() const {
    return state_->firstInstant();
}

void RunLoop::reset() {
    // Destroyed after the lock is given back: what these own may come back to the loop.
    std::deque<Given> tasks;
    std::map<State::TimerKey, Given> timers;
    std::vector<State::Watch> watches;
    std::vector<State::Check> checks;
    const std::lock_guard lock(state_->mutex);
    tasks.swap(state_->tasks);
    timers.swap(state_->timers);
    watches.swap(state_->watches);
    checks.swap(state_->checks);
    state_->instants.clear();
    state_->beforeSleeping = nullptr;
    state_->tasksOfTurn = 0;
    state_->activities = 0;
    state_->stopped = false;
}

}  // namespace platform
