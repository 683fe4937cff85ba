// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "settings/watching/Alarm.h"
#include "settings/watching/BuildErrors.h"
#include "settings/watching/ChildProcess.h"
#include "settings/watching/PathWatch.h"

namespace settings {

/// Runs a build at the start and each time that sources have changed, one at a time; what has changed while
/// one runs is built behind it. What a build prints goes to standard error too. Main thread.
class BuildRun {
  public:
    struct Options {
        /// A line for the shell, run in the present directory.
        std::string command;
        /// Directories whose files are the sources. Absolute paths.
        std::vector<std::string> sources;
        /// What lies below these is none. Absolute paths.
        std::vector<std::string> products;
    };
    struct Events {
        std::function<void()> begun;
        /// Nothing when all is built.
        std::function<void(const std::optional<BuildError>&)> ended;
    };

    static platform::Result<std::unique_ptr<BuildRun>> create(Options options, Events events);
    /// Ends a build that runs.
    ~BuildRun();
    BuildRun(const BuildRun&) = delete;
    BuildRun& operator=(const BuildRun&) = delete;

    /// Builds now, or after the build that runs.
    void build();
    bool isRunning() const { return process_ != nullptr; }

  private:
    BuildRun(Options options, Events events);
    void sourceChanged(const std::string& path, Writing writing);
    bool isNoSource(const std::string& path) const;
    void start();
    void readOutput();
    void finish(int status);
    BuildError errorOf(int status) const;

    Options options_;
    Events events_;
    std::unique_ptr<PathWatch> watch_;
    Alarm settled_{[this] { build(); }};
    std::unique_ptr<ChildProcess> process_;
    device::Descriptor output_;
    std::string printed_;
    bool again_ = false;
};

}  // namespace settings
