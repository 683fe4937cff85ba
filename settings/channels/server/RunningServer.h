// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/foundation/Error.h"
#include "settings/channels/server/RuntimeFolder.h"

namespace settings::server {

/// A server that runs, as other programs of the same user find it: a small page in the runtime folder, its
/// owner's only, which leads a browser to the address with the secret. A browser is opened with that file,
/// because others can read what a program is started with. As long as this lives the file is locked, so that
/// one that a killed server has left is known for what it is.
class RunningServer {
  public:
    /// Host paths. `url` is the whole address.
    static platform::Result<RunningServer> announce(const std::string& runtimeDirectory,
                                                    const std::string& rootDirectory, const std::string& url);
    RunningServer(RunningServer&& other) noexcept;
    RunningServer& operator=(RunningServer&&) = delete;
    /// Takes the file away.
    ~RunningServer();

    /// Takes the file away for good, unless somebody has found it since it was announced or last asked for:
    /// then it stays, since a page is about to come. Whether it went.
    bool retract();

    /// What is found of a server.
    struct Found {
        /// The page that leads to it.
        std::string file;
        std::string url;
    };
    /// One of those that run on that root; nothing when there is none, or no runtime folder. It will
    /// not end for want of pages before it has waited for one anew. Takes away what ended ones have left.
    static std::optional<Found> find(const std::string& runtimeDirectory, const std::string& rootDirectory);

  private:
    RunningServer(RuntimeFolder folder, std::string name, int descriptor);

    RuntimeFolder folder_;
    std::string name_;
    /// When somebody found it last, in nanoseconds of the file.
    std::int64_t foundAt_;
    /// Holds the lock; -1 once this was moved from.
    int descriptor_;
};

}  // namespace settings::server
