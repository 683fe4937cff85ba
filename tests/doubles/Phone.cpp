// SPDX-License-Identifier: MIT
#include "tests/doubles/Phone.h"

#include "platform/foundation/DarwinNotificationCenter.h"
#include "platform/foundation/Device.h"
#include "platform/foundation/Journal.h"
#include "platform/foundation/NotificationCenter.h"
#include "platform/foundation/RunLoop.h"
#include "platform/uikit/UIApplication.h"

namespace doubles {

Phone::Phone()
    : clock(std::make_shared<device::VirtualClock>(
          device::VirtualClock::parse("2026-11-20T12:00:00").value_or(platform::Date()))) {
    forgetEverything();
    install();
    platform::Journal::shared().start();
}

Phone::~Phone() {
    forgetEverything();
    platform::Device::install({});
}

void Phone::install() {
    platform::Device phone;
    phone.files = files;
    phone.clock = clock;
    phone.notifications = notifications;
    phone.facts = facts;
    phone.urls = urls;
    phone.libraries = libraries;
    phone.calendars = calendars;
    phone.networks = networks;
    phone.tones = tones;
    phone.mail = mail;
    phone.processes = processes;
    phone.log = log;
    platform::Device::install(std::move(phone));
    // A transport that refuses to start is what a test may want to see; it then connects itself.
    static_cast<void>(platform::DarwinNotificationCenter::shared().connect());
}

std::shared_ptr<platform::UINavigationController> Phone::show(
    const std::shared_ptr<platform::UIViewController>& screen) {
    auto navigation = screen ? platform::UINavigationController::initWithRootViewController(screen) : nullptr;
    platform::UIApplication::sharedApplication().setRootViewController(navigation);
    return navigation;
}

std::shared_ptr<platform::UIViewController> Phone::top() {
    return platform::UIApplication::sharedApplication().topmostPresented();
}

void Phone::drain() {
    platform::RunLoop::main().drain();
}

void Phone::advance(double seconds) {
    static_cast<void>(device::advanceRunning(*clock, seconds));
}

std::vector<platform::Dictionary> Phone::takeEvents() {
    std::vector<platform::Dictionary> events;
    for (platform::JournalEntry& entry : platform::Journal::shared().take())
        events.push_back(std::move(entry.event));
    return events;
}

std::vector<platform::Dictionary> Phone::takeEvents(std::string_view kind) {
    std::vector<platform::Dictionary> events = takeEvents();
    std::erase_if(events,
                  [&](const platform::Dictionary& event) { return event.at("event").stringOr() != kind; });
    return events;
}

void Phone::forgetEverything() {
    // Background work first, because it posts to the rest.
    platform::GlobalQueue::shared().waitUntilIdle();
    platform::UIApplication::sharedApplication().setRootViewController(nullptr);
    platform::UIApplication::sharedApplication().setStatusBarStyle(platform::UIStatusBarStyleDefault);
    platform::RunLoop::main().reset();
    platform::NotificationCenter::defaultCenter().reset();
    platform::DarwinNotificationCenter::shared().reset();
    platform::Journal::shared().stop();
}

std::shared_ptr<platform::UIAlertController> shownAlert() {
    return std::dynamic_pointer_cast<platform::UIAlertController>(Phone::top());
}

}  // namespace doubles
