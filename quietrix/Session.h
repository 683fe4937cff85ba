// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "device/RootFileSystem.h"
#include "platform/foundation/Error.h"
#include "profile/model/QXProfilesManager.h"
#include "quietrix/Outcome.h"
#include "quietrix/Output.h"

namespace console {

/// One run of the program: the phone in a root, as far as its profiles go, and where the answer goes. It
/// installs the device's services and takes them away again, so there is one at a time. Main thread.
class Session {
  public:
    using Records = quietrix::QXProfilesManager::Records;
    using Change = quietrix::QXProfilesManager::Change;
    /// What is to be changed, from the profiles as they are. Called once or twice, the second time while the
    /// profiles file is locked.
    using Plan = std::function<std::expected<std::vector<Change>, Refusal>(const Records& present)>;

    /// A host path, which need not exist.
    Session(const std::string& rootDirectory, Output& output);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    Output& output() { return output_; }
    const device::RootFileSystem& files() const { return *files_; }

    /// In the file's order, as records of this session's own.
    std::expected<Records, Refusal> profiles();
    /// Makes the changes as one. A plan without changes writes and locks nothing. One that is refused leaves
    /// everything as it is. What was changed is announced by the time this returns.
    enum class NewRoot { Make, Leave };
    std::expected<void, Refusal> change(const Plan& plan, NewRoot newRoot = NewRoot::Leave);

    /// Goes back to that state of the history. What was changed is announced by the time this returns.
    std::expected<quietrix::ProfilesRestoration, Refusal> restore(std::uint64_t number);

    /// A root that is not there yet, or empty, becomes a freshly set-up phone; any other is left as it is.
    std::expected<void, Refusal> makeRootReady();
    /// Posts the name to every process that shares the root, at once.
    void post(std::string_view notification);
    /// From now on what is posted reaches the others. The error says why it does not.
    platform::Result<void> connect();
    /// Says so, of a change that was made.
    void noteUnheard(const platform::Result<void>& connected);
    /// The phone's settings file; nil where there is none. The error says why it cannot be used.
    std::expected<platform::Value, Refusal> settings() const;

  private:
    Output& output_;
    std::shared_ptr<device::RootFileSystem> files_;
    std::shared_ptr<quietrix::QXProfilesManager> store_ = std::make_shared<quietrix::QXProfilesManager>();
};

}  // namespace console
