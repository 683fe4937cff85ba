// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

#include "platform/foundation/Value.h"

namespace platform {

/// The main run loop: tasks for the main queue, delayed calls on the phone's clock, and file descriptors.
/// There is one; the thread that first asks for it is the main thread, and only that thread may run it.
class RunLoop {
  public:
    using Task = std::function<void()>;
    using TimerId = std::uint64_t;

    /// Throws std::system_error the first time when the system has no pipe left for it.
    static RunLoop& main();

    /// Whether the caller is on the main thread.
    bool isCurrent() const;

    /// Queues a task for the main thread, behind those already queued. Any thread.
    void post(Task task);
    /// Calls the task after so many seconds of the phone's clock; negative or not a number counts as 0, which
    /// still is later, never at once. Equal instants keep their order. The task owns
    /// what it captures until it has run or was cancelled. Any thread.
    TimerId performAfterDelay(double seconds, Task task);
    /// A timer that has fired or is unknown is ignored. Any thread.
    void cancel(TimerId timer);
    /// When a watched descriptor is served: only by run(), as what brings commands must be, or wherever the
    /// loop waits, as what the device itself is doing may be.
    enum class Serve { ByRun, Always };
    /// Calls the handler on the main thread as long as the descriptor is readable (or hung up). The
    /// descriptor stays the caller's, who unwatches it before closing it. A second watch of a descriptor
    /// replaces the first. A handler served by run() may drain() the loop, one served always may not. Main
    /// thread.
    void watch(int descriptor, Task readable, Serve serve = Serve::ByRun);
    void unwatch(int descriptor);

    /// Work that goes on elsewhere and will come back to the main thread: drain() waits for it. Any thread.
    void beginActivity();
    void endActivity();
    /// A question drain() asks before it believes that nothing is left: true while something is on its way
    /// that will be posted by itself. Called on the main thread; kept for the life of the process unless
    /// removed.
    std::uint64_t addPendingCheck(std::function<bool()> pending);
    void removePendingCheck(std::uint64_t id);

    /// Runs until nothing is left to do now: queued tasks, due delayed calls, activities, pending checks.
    /// Descriptors are served only while it waits, and only those that always are. Main thread; not from
    /// within a task.
    void drain();
    /// Runs until `until` answers true, the real time is over, or stop() was called; tells whether it was the
    /// first. `until` is asked before anything runs, after each task, and every few milliseconds of idleness.
    /// Of the descriptors only those that always are get served. Main thread; not from within a task.
    bool runUntil(const std::function<bool()>& until, std::chrono::milliseconds atMost);
    /// Runs, serving descriptors too, until stop(). Main thread.
    void run();
    /// Called each time run() has done something, a descriptor's handler included, and is about to sleep;
    /// replaces the one before, and an empty one is nobody's. It may drain() the loop. Main thread.
    void setBeforeSleeping(Task task);
    /// Ends run(): the present one, or when none runs, the next one at once. Any thread, also from a
    /// signal-safe context through a watched descriptor.
    void stop();
    /// The instant of the earliest delayed call, if there is one.
    std::optional<Date> nextTimer() const;

    /// Forgets every task, timer, watch, check, activity and stop. For tests, between cases.
    void reset();

  private:
    RunLoop();
    ~RunLoop();

    struct State;
    std::unique_ptr<State> state_;
};

/// The global queue of default priority: runs tasks on background threads, in no promised order. The main
/// loop's drain() waits for them.
class GlobalQueue {
  public:
    static GlobalQueue& shared();

    /// Where tasks run: on threads, or in the order of their giving as tasks of the main run loop, so that
    /// the order of everything does not depend on the machine.
    enum class Place { Threads, MainLoop };
    /// For what is given from then on. Main thread, while no task is under way.
    void setPlace(Place place);
    /// Any thread.
    void async(RunLoop::Task task);
    /// Waits until every task has run. For tests, which then may reset the main loop; never from a task.
    void waitUntilIdle();

  private:
    GlobalQueue();
    ~GlobalQueue();

    struct State;
    std::unique_ptr<State> state_;
};

/// The main queue: `dispatchMain(task)` runs the task on the main thread later, never at once.
inline void dispatchMain(RunLoop::Task task) {
    RunLoop::main().post(std::move(task));
}

}  // namespace platform
