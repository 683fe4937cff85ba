// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/foundation/Bundle.h"
#include "platform/preferences/PSListController.h"
#include "platform/uikit/UINavigationController.h"
#include "settings/application/EventLog.h"
#include "settings/application/ImageCatalog.h"
#include "settings/application/RunningPhone.h"

namespace settings {

/// The Settings application on the installed device: its list of bundles, and above it the screens of the
/// bundle that is open. One at a time; main thread. All sessions act on the same one.
class Application {
  public:
    /// `bundlePath` is the phone path of the bundle that start() opens. `phone` is what can be changed of the
    /// installed device; it must outlive the application, and is null for a device that stays as it is.
    explicit Application(std::string bundlePath, RunningPhone* phone = nullptr);
    /// Closes the window, with everything that is shown.
    ~Application();
    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;

    /// Begins keeping the journal, shows the list of bundles and opens the given one above it.
    void start();
    /// Leaves every screen above the list and opens the bundle that was open last anew, in the same process.
    void reopen();

    /// Changes the device by "KEY=VALUE" pairs, all or nothing: every screen is left, and opened anew along
    /// the same path. What comes back is a sentence on where that path ended, if not where it did before.
    platform::Result<std::optional<std::string>> changeDevice(const std::vector<std::string>& pairs);

    /// What the application of another process needs to go on where this one is: the bundle, the screens, and
    /// what they are known by.
    platform::Value handOver() const;
    /// Goes on where the application was that has given this; before anybody has seen this one. Gives a
    /// sentence on where the way to the screen ended, if it could not be gone to its end.
    std::optional<std::string> takeOver(const platform::Value& given);
    /// Why the bundle that is open could not be loaded, as a sentence; nothing when it could.
    std::optional<std::string> bundleProblem() const;

    /// What is to be told about the program's own renewal, for the state; nil for nothing. A channel's
    /// matter.
    const platform::Value& build() const { return build_; }
    void setBuild(platform::Value build) { build_ = std::move(build); }

    /// Takes over what the journal holds and forgets what no session has asked for in a long time, so that an
    /// idle application does not grow. The main run loop calls it before it sleeps, unless a channel does as
    /// much.
    void keepUp();

    /// The bundle whose screens are above the list, or were last; null before start().
    const std::shared_ptr<platform::Bundle>& bundle() const { return bundle_; }
    /// The device's clock when that is one that can be moved, else null.
    std::shared_ptr<device::VirtualClock> clock() const { return phone_ ? phone_->clock() : nullptr; }
    /// Null when the device stays as it is.
    RunningPhone* phone() const { return phone_; }
    EventLog& events() { return events_; }
    ImageCatalog& images() { return images_; }

    /// A number for a session, by which the others are told whose command something came of; from 1.
    std::uint64_t newConnection() { return ++connections_; }

    /// Grows with every change that a session has seen.
    std::uint64_t revision() const { return revision_; }
    void raiseRevision() { ++revision_; }

  private:
    void openBundle(const std::string& path);
    void leaveScreens();

    std::string bundlePath_;
    RunningPhone* phone_;
    std::shared_ptr<platform::PSListController> list_;
    std::shared_ptr<platform::UINavigationController> navigation_;
    std::shared_ptr<platform::Bundle> bundle_;
    EventLog events_;
    ImageCatalog images_;
    platform::Value build_;
    std::uint64_t revision_ = 0;
    std::uint64_t connections_ = 0;
};

}  // namespace settings
