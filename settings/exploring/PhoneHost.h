// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>

#include "platform/uikit/UIViewController.h"
#include "settings/application/Application.h"
#include "settings/recording/RecordedWorld.h"
#include "settings/recording/Recording.h"
#include "settings/recording/Replayer.h"

namespace settings {

/// A phone that lives in a process of its own and does what it is sent, so that its end is seen from outside.
/// Each line that comes is a step of a recording, without an answer; for each goes out one object:
/// - `answer`: of a command, in one line;
/// - `time`: the milliseconds since the start by now;
/// - `memory`: the bytes that the process has allocated and not freed;
/// - `stored`: the bytes of the files that the bundle stores;
/// - `kept`: the classes of screens that are still there although they were left, looked for as time passes;
/// - `names`: notifications that something listens to, when there are new ones;
/// - `paths`: the phone paths of the stored files, after the start;
/// - `error`: instead of all, why the step cannot be done.
///
/// Main thread.
class PhoneHost {
  public:
    /// As for Replayer.
    PhoneHost(Application& application, RecordedWorld& world, std::string rootDirectory);

    /// Until the other end of the socket is closed. False when it cannot be written to.
    bool serve(int socket);
    /// Says on the socket why there is no phone.
    static void refuse(int socket, const std::string& reason);

  private:
    std::string report(const std::string& line);
    platform::Dictionary findings(const RecordedStep& step);
    void noteScreens();
    platform::Array keptScreens();
    platform::Array newNames();

    Application& application_;
    RecordedWorld& world_;
    Replayer replayer_;
    /// By their numbers, all that were on a stack after some step and are not known to be gone.
    std::map<std::uint64_t, std::weak_ptr<platform::UIViewController>> screens_;
    std::set<std::string> names_;
    /// What had happened when the last command was over.
    EventLog::Place toldUpTo_;
};

}  // namespace settings
