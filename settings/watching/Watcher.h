// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "platform/foundation/Error.h"
#include "settings/watching/Alarm.h"
#include "settings/watching/BuildRun.h"
#include "settings/watching/FileStamps.h"
#include "settings/watching/PathWatch.h"
#include "settings/watching/ProgramRelay.h"

namespace settings {

/// What a watched program is made of. Host paths.
struct WatchOptions {
    /// The program and what it is started with.
    std::vector<std::string> arguments;
    std::uint16_t port = 0;
    /// Asked for once the root is there.
    std::function<platform::Result<std::string>(std::uint16_t port)> secret;
    /// Directories and files that the program is made of or loads, beside the libraries that are seen to be
    /// loaded. The first two have to be there for it to be started.
    std::vector<std::string> program;
    /// The directory of the page; "" for none.
    std::string page;
    /// Nothing: whoever changes the files builds them.
    std::optional<BuildRun::Options> build;
};

/// Serves, and starts the program anew whenever what it is made of has changed, on the same socket and with
/// the same screens; the page loads itself anew when its own files have changed. Main thread, one at a time.
class Watcher {
  public:
    explicit Watcher(WatchOptions options);
    ~Watcher();
    Watcher(const Watcher&) = delete;
    Watcher& operator=(const Watcher&) = delete;

    /// Prints the address as one line on standard output once somebody serves there, and runs until a
    /// signal asks it to end. An error says why it could not begin.
    platform::Result<void> run();

  private:
    platform::Result<void> watchSignals();
    platform::Result<void> watchFiles();
    platform::Result<void> beginBuilds();
    void productChanged(const std::string& path, Writing writing);
    void settled();
    /// Takes what is on the disk now for the next version.
    void look();
    bool isComplete() const;
    HostStamps programStamps() const { return stampsOf(programPaths_); }
    void buildBegun();
    void buildEnded(const std::optional<BuildError>& error);
    void serving();
    void refused(const std::string& reason);
    void down(const std::string& reason);
    void tell();
    platform::Dictionary state() const;

    WatchOptions options_;
    device::Descriptor listener_;
    device::Descriptor signals_;
    std::vector<std::string> programPaths_;
    std::unique_ptr<PathWatch> products_;
    /// Files that somebody is writing.
    std::set<std::string> unfinished_;
    std::optional<std::chrono::steady_clock::time_point> unsettledSince_;
    Alarm quiet_{[this] { settled(); }};
    /// What serves, what is about to, and what cannot.
    HostStamps running_;
    HostStamps candidate_;
    std::optional<HostStamps> refusedStamps_;
    std::optional<BuildError> refusal_;
    std::optional<BuildError> buildError_;
    HostStamps pageStamps_;
    std::uint64_t pageVersion_ = 1;
    bool hasServed_ = false;
    std::optional<std::string> failure_;
    std::unique_ptr<ProgramRelay> relay_;
    std::unique_ptr<BuildRun> build_;
};

}  // namespace settings
