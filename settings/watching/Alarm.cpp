// SPDX-License-Identifier: MIT
#include "settings/watching/Alarm.h"

#include <sys/timerfd.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <system_error>
#include <utility>

#include "platform/foundation/RunLoop.h"

namespace settings {

Alarm::Alarm(std::function<void()> due)
    : due_(std::move(due)), timer_(timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC | TFD_NONBLOCK)) {
    if (!timer_) throw std::system_error(errno, std::generic_category(), "There is no timer");
    platform::RunLoop::main().watch(timer_.get(), [this] {
        std::uint64_t times = 0;
        if (read(timer_.get(), &times, sizeof times) != sizeof times) return;
        isSet_ = false;
        due_();
    });
}

Alarm::~Alarm() {
    platform::RunLoop::main().unwatch(timer_.get());
}

void Alarm::set(std::chrono::milliseconds after) {
    itimerspec when{};
    when.it_value.tv_sec = after.count() / 1000;
    // Never all zero, which would be no alarm at all.
    when.it_value.tv_nsec = after.count() % 1000 * 1'000'000 + 1;
    timerfd_settime(timer_.get(), 0, &when, nullptr);
    isSet_ = true;
}

void Alarm::cancel() {
    const itimerspec never{};
    timerfd_settime(timer_.get(), 0, &never, nullptr);
    isSet_ = false;
}

}  // namespace settings
