// SPDX-License-Identifier: MIT
// How long a system-wide notification is on its way until the last of so many idle processes has it on its
// main thread, beside a signal over a bus of its own:
//     darwin-bench RECEIVERS DIRECTORY BUS_ADDRESS
// The receivers are children that were forked before there was any thread. They note the time and wake the
// poster, which only then posts again, to the others.
#include <sdbus-c++/sdbus-c++.h>
#include <sys/eventfd.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "bench/Rounds.h"
#include "device/DatagramTransport.h"
#include "platform/foundation/DarwinNotificationCenter.h"
#include "platform/foundation/Device.h"
#include "platform/foundation/RunLoop.h"

namespace {

using bench::Clock;

constexpr const char* name = "com.velmora.ProfileChangedNotification";
constexpr const char* busName = "com.velmora.Quietrix";
constexpr const char* objectPath = "/com/velmora/Quietrix";
constexpr const char* interfaceName = "com.velmora.Quietrix";
constexpr const char* signalName = "ProfileChanged";

/// When the receivers of one kind had it, in memory that all processes share, and what wakes the poster.
class Arrivals {
  public:
    explicit Arrivals(std::size_t receivers)
        : times_(static_cast<std::atomic<double>*>(mmap(nullptr, receivers * sizeof(std::atomic<double>),
                                                        PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS,
                                                        -1, 0)),
                 receivers),
          wakeUp_(eventfd(0, EFD_SEMAPHORE)) {}

    void note(std::size_t receiver) {
        times_[receiver] = bench::now(Clock::Wall);
        eventfd_write(wakeUp_, 1);
    }
    /// When the last one had it.
    double waitForAll() {
        for (std::size_t i = 0; i < times_.size(); ++i) {
            eventfd_t one = 0;
            eventfd_read(wakeUp_, &one);
        }
        double last = 0;
        for (const auto& time : times_) last = std::max(last, time.load());
        return last;
    }

  private:
    std::span<std::atomic<double>> times_;
    int wakeUp_;
};

/// Runs the work in a child that goes with this process.
void startChild(const std::function<void()>& work) {
    const pid_t parent = getpid();
    if (fork() != 0) return;
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent) _exit(1);
    work();
    _exit(0);
}

void receiveFromCentre(const std::string& root, Arrivals& arrivals, std::size_t receiver) {
    platform::Device phone;
    phone.notifications = std::make_shared<device::DatagramTransport>(root);
    platform::Device::install(phone);
    static std::function<void()> arrived;
    arrived = [&] { arrivals.note(receiver); };
    platform::CFNotificationCenterAddObserver(
        platform::CFNotificationCenterGetDarwinNotifyCenter(), nullptr,
        [](platform::DarwinNotificationCenter&, void*, const std::string&, const void*,
           const platform::Value&) { arrived(); },
        name, nullptr, platform::CFNotificationSuspensionBehavior::DeliverImmediately);
    if (!platform::DarwinNotificationCenter::shared().connect()) std::abort();
    // That it listens.
    arrived();
    platform::RunLoop::main().run();
}

void receiveFromBus(const std::string& address, Arrivals& arrivals, std::size_t receiver) {
    const auto connection = sdbus::createSessionBusConnectionWithAddress(address);
    const auto proxy = sdbus::createProxy(*connection, busName, objectPath);
    proxy->registerSignalHandler(interfaceName, signalName, [&](sdbus::Signal&) { arrivals.note(receiver); });
    proxy->finishRegistration();
    arrivals.note(receiver);
    connection->enterEventLoop();
}

bench::Turn posting(Arrivals& arrivals, std::function<void()> post) {
    return [&arrivals, post = std::move(post)](std::int64_t repetitions) {
        double taken = 0;
        for (std::int64_t i = 0; i < repetitions; ++i) {
            const double start = bench::now(Clock::Wall);
            post();
            taken += arrivals.waitForAll() - start;
        }
        return taken;
    };
}

}  // namespace

int main(int argumentCount, char** argumentValues) {
    if (argumentCount != 4) {
        std::cerr << "usage: darwin-bench RECEIVERS DIRECTORY BUS_ADDRESS\n";
        return 2;
    }
    // A receiver that has gone is waited for in vain: then this ends with an error.
    alarm(120);
    const auto receivers = static_cast<std::size_t>(std::atoi(argumentValues[1]));
    const std::string root = argumentValues[2];
    const std::string address = argumentValues[3];
    Arrivals centre(receivers);
    Arrivals bus(receivers);
    for (std::size_t i = 0; i < receivers; ++i) {
        startChild([&] { receiveFromCentre(root, centre, i); });
        startChild([&] { receiveFromBus(address, bus, i); });
    }
    centre.waitForAll();
    bus.waitForAll();
    device::DatagramTransport transport(root);
    const auto connection = sdbus::createSessionBusConnectionWithAddress(address);
    connection->requestName(busName);
    const auto object = sdbus::createObject(*connection, objectPath);
    const std::string at = std::to_string(receivers) + (receivers == 1 ? " idle process" : " idle processes");
    bench::compare({"System-wide notification", at, "D-Bus signal", bench::atLeast(receivers == 1 ? 5 : 2)},
                   bench::Figure::TimesFaster, posting(centre, [&] { transport.post(name); }),
                   posting(bus, [&] {
                       auto signal = object->createSignal(interfaceName, signalName);
                       object->emitSignal(signal);
                   }));
}
