// SPDX-License-Identifier: MIT
// What posting a local notification costs beside a signal of Boost.Signals2 whose slots are tracked, so that
// it too holds its observers weakly, and beside a bare vector of functions, which is what there is to gain at
// most. Ours writes its entry into the journal meanwhile, which somebody else empties now and then.
#include <algorithm>
#include <boost/signals2.hpp>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "bench/Rounds.h"
#include "platform/foundation/Journal.h"
#include "platform/foundation/NotificationCenter.h"
#include "platform/foundation/Object.h"

namespace {

using bench::Clock;
using platform::Notification;

class Observer : public platform::Object {
    PLATFORM_CLASS(Observer, platform::Object)

  public:
    void changed(const Notification& notification) { heard_ = heard_ + notification.name.size(); }

  private:
    volatile std::size_t heard_ = 0;
};

PLATFORM_REGISTER_CLASS(Observer)

constexpr std::string_view name = "com.velmora.ProfileChangedNotification";
/// As many as there are between two of the application's looks at the most.
constexpr std::int64_t journalEntries = 1000;

void compare(std::int64_t count, double target) {
    std::vector<std::shared_ptr<Observer>> observers;
    platform::NotificationCenter center;
    boost::signals2::signal<void(const Notification&)> signal;
    std::vector<std::function<void(const Notification&)>> functions;
    for (std::int64_t i = 0; i < count; ++i) {
        const auto observer = std::make_shared<Observer>();
        observers.push_back(observer);
        center.addObserver_selector_name_object(observer, platform::method("changed:", &Observer::changed),
                                                name, nullptr);
        using Slot = decltype(signal)::slot_type;
        signal.connect(
            Slot(&Observer::changed, observer.get(), boost::placeholders::_1).track_foreign(observer));
        functions.emplace_back(
            [observer](const Notification& notification) { observer->changed(notification); });
    }
    const auto posts = bench::timed(Clock::Processor,
                                    [&] { center.postNotificationName_object_userInfo(name, nullptr, {}); });
    const auto ours = [&](std::int64_t repetitions) {
        double taken = 0;
        for (std::int64_t left = repetitions; left > 0; left -= journalEntries) {
            taken += posts(std::min(left, journalEntries));
            platform::Journal::shared().take();
        }
        return taken;
    };
    const auto tell = [](auto& listeners) { listeners(Notification{std::string(name), nullptr, {}}); };
    const std::string at = bench::grouped(count) + (count == 1 ? " observer" : " observers");
    bench::compare({"Local notification", at, "Boost.Signals2, tracked", bench::atLeast(target)},
                   bench::Figure::TimesFaster, ours, bench::timed(Clock::Processor, [&] { tell(signal); }));
    const auto all = [&](const Notification& notification) {
        for (const auto& function : functions) function(notification);
    };
    bench::compare({"Local notification", at, "a vector of functions", {}}, bench::Figure::TimesAsLong, ours,
                   bench::timed(Clock::Processor, [&] { tell(all); }));
}

}  // namespace

int main() {
    platform::Journal::shared().start();
    compare(1, 1.5);
    compare(100, 4);
    compare(10'000, 4);
}
