// SPDX-License-Identifier: MIT
#include <pthread.h>
#include <signal.h>

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <utility>

#include "platform/foundation/Journal.h"
#include "platform/foundation/RunLoop.h"

namespace platform {

namespace {

/// A task beside what it comes of.
struct Given {
    RunLoop::Task task;
    JournalCause cause;
};

/// A task that throws has no caller who could handle it.
void run(const Given& given) noexcept {
    const Journal::Causing causing(given.cause);
    given.task();
}

std::size_t threadLimit() {
    return std::clamp<std::size_t>(std::thread::hardware_concurrency(), 2, 4);
}

}  // namespace

struct GlobalQueue::State {
    std::mutex mutex;
    std::condition_variable ready;
    std::condition_variable idle;
    std::deque<Given> tasks;
    std::size_t threads = 0;
    std::size_t running = 0;
    Place place = Place::Threads;

    [[noreturn]] void work() {
        std::unique_lock lock(mutex);
        for (;;) {
            ready.wait(lock, [this] { return !tasks.empty(); });
            Given next = std::move(tasks.front());
            tasks.pop_front();
            ++running;
            lock.unlock();
            run(next);
            // Before the activity ends: what the task releases is part of it.
            next = {};
            RunLoop::main().endActivity();
            lock.lock();
            --running;
            if (running == 0 && tasks.empty()) idle.notify_all();
        }
    }

    /// Called with the lock held.
    void startThread() {
        // Signals are the main thread's.
        sigset_t all;
        sigset_t before;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &before);
        std::thread([this] { work(); }).detach();
        pthread_sigmask(SIG_SETMASK, &before, nullptr);
        ++threads;
    }
};

GlobalQueue::GlobalQueue() : state_(std::make_unique<State>()) {}

GlobalQueue::~GlobalQueue() = default;

GlobalQueue& GlobalQueue::shared() {
    // Never destroyed: its threads wait for work until the process is gone.
    static GlobalQueue& queue = *new GlobalQueue;
    return queue;
}

void GlobalQueue::setPlace(Place place) {
    const std::lock_guard lock(state_->mutex);
    state_->place = place;
}

void GlobalQueue::async(RunLoop::Task task) {
    if (!task) return;
    {
        const std::lock_guard lock(state_->mutex);
        if (state_->place == Place::MainLoop) return RunLoop::main().post(std::move(task));
    }
    RunLoop::main().beginActivity();
    JournalCause cause = Journal::presentCause();
    const std::lock_guard lock(state_->mutex);
    state_->tasks.push_back({std::move(task), std::move(cause)});
    if (state_->threads < std::min(threadLimit(), state_->running + state_->tasks.size()))
        state_->startThread();
    state_->ready.notify_one();
}

void GlobalQueue::waitUntilIdle() {
    std::unique_lock lock(state_->mutex);
    state_->idle.wait(lock, [this] { return state_->running == 0 && state_->tasks.empty(); });
}

}  // namespace platform
