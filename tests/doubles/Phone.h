// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "device/VirtualClock.h"
#include "platform/foundation/Value.h"
#include "platform/uikit/UIAlertController.h"
#include "platform/uikit/UINavigationController.h"
#include "tests/doubles/Fakes.h"
#include "tests/doubles/LoopbackTransport.h"
#include "tests/doubles/MemoryFileSystem.h"

namespace doubles {

/// A phone made of doubles, for one test: the installed device as long as it lives. The constructor and the
/// destructor leave a main run loop, notification centres, a window and a journal in which nothing is left of
/// another test; the journal is being kept. The clock is a virtual one at noon of a fixed day. Main thread.
///
/// Declare it first in a test: the tasks that a test leaves behind are dropped, not run, when it goes.
class Phone {
  public:
    Phone();
    ~Phone();
    Phone(const Phone&) = delete;
    Phone& operator=(const Phone&) = delete;

    std::shared_ptr<MemoryFileSystem> files = std::make_shared<MemoryFileSystem>();
    std::shared_ptr<device::VirtualClock> clock;
    std::shared_ptr<LoopbackTransport> notifications = std::make_shared<LoopbackTransport>();
    std::shared_ptr<FakeDeviceFacts> facts = std::make_shared<FakeDeviceFacts>();
    std::shared_ptr<FakeURLOpener> urls = std::make_shared<FakeURLOpener>();
    std::shared_ptr<FakeLibraries> libraries = std::make_shared<FakeLibraries>();
    std::shared_ptr<FakeCalendarSource> calendars = std::make_shared<FakeCalendarSource>();
    std::shared_ptr<FakeNetworkSource> networks = std::make_shared<FakeNetworkSource>();
    std::shared_ptr<FakeToneSource> tones = std::make_shared<FakeToneSource>();
    std::shared_ptr<FakeMailService> mail = std::make_shared<FakeMailService>();
    std::shared_ptr<FakeProcesses> processes = std::make_shared<FakeProcesses>();
    std::shared_ptr<MemoryLog> log = std::make_shared<MemoryLog>();

    /// Installs the device again, after a member was exchanged or emptied, and connects it anew.
    void install();
    /// Shows the screen as the first of a navigation controller in the window; null leaves the window empty.
    std::shared_ptr<platform::UINavigationController> show(
        const std::shared_ptr<platform::UIViewController>& screen);
    /// What is on top of everything; null for an empty window.
    static std::shared_ptr<platform::UIViewController> top();
    /// Runs the main loop until nothing is left to do now.
    void drain();
    /// Moves the clock, making the delayed calls on the way.
    void advance(double seconds);
    /// The journal's events since the last call, and of those the ones of one kind.
    std::vector<platform::Dictionary> takeEvents();
    std::vector<platform::Dictionary> takeEvents(std::string_view kind);

  private:
    static void forgetEverything();
};

/// The alert or sheet on top of everything; null when something else is.
std::shared_ptr<platform::UIAlertController> shownAlert();

}  // namespace doubles
