// SPDX-License-Identifier: MIT
#include "device/EscapedText.h"
#include "platform/foundation/FileManager.h"
#include "profile/model/ProfileHistory.h"
#include "quietrix/Commands.h"
#include "quietrix/ProfileEditing.h"
#include "shell/base/NotificationNames.h"

namespace console {

namespace {

constexpr double lockSeconds = 2.0;

Outcome reset(Session& session, bool isAgreed) {
    auto& files = platform::FileManager::defaultManager();
    const auto missing = [] {
        return refusal(Status::Failed,
                       "There is no profiles file " + device::quotedText(quietrix::profilesPath) + ".");
    };
    const auto stamp = files.stampAtPath(quietrix::profilesPath);
    if (!stamp) return refusal(Status::Failed, stamp.error().localizedDescription);
    if (!*stamp) return missing();
    if (files.directoryExistsAtPath(quietrix::profilesPath))
        return refusal(Status::Failed, device::quotedText(quietrix::profilesPath) + " is a directory.");
    if (const auto asked = confirmed(session, isAgreed, "Delete all profiles?"); !asked)
        return std::unexpected(asked.error());
    std::size_t count = 0;
    {
        // Who is at a change would put the file back.
        const auto lock = files.lockExclusively(quietrix::profilesPath, lockSeconds);
        if (!lock) return refusal(Status::Failed, lock.error().localizedDescription);
        if (!files.fileExistsAtPath(quietrix::profilesPath)) return missing();
        // Of a file that cannot be used nobody knows how many there were; it goes all the same.
        if (const auto profiles = session.profiles()) count = profiles->size();
        if (const auto removed = quietrix::ProfileHistory::removeProfilesFile(); !removed)
            return refusal(Status::Failed, removed.error().localizedDescription);
    }
    session.post(quietrix::ProfileAppliedStateChangedNotification);
    return Answer{.text = "Deleted " + std::to_string(count) + (count == 1 ? " profile" : " profiles") + "\n",
                  .json = {{"removed", count}}};
}

}  // namespace

void addReset(Commands& commands) {
    Command& command = commands.add("reset", "Deletes all profiles, and asks before");
    const auto isAgreed = command.flag("--yes", "Does not ask");
    command.run([=](Session& session) { return reset(session, isAgreed()); });
}

}  // namespace console
