// SPDX-License-Identifier: MIT
// What the store has to do with the history of its file.
#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/foundation/FileManager.h"
#include "platform/foundation/Journal.h"
#include "platform/foundation/LogSink.h"
#include "platform/foundation/RunLoop.h"
#include "profile/model/QXProfilesManager.h"
#include "shell/base/NotificationNames.h"

namespace quietrix {

using platform::FileManager;
using platform::Result;

void QXProfilesManager::keepWhatWasFound() {
    {
        const std::scoped_lock lock(mutex_);
        if (isKept_ || !stamp_) return;
    }
    const auto kept = ProfileHistory::keep();
    const Result<Stamp> stamp = FileManager::defaultManager().stampAtPath(profilesPath);
    const std::scoped_lock lock(mutex_);
    noteKept(kept);
    // It is the same file, with one name more.
    if (stamp && *stamp && stamp_ && *stamp_) {
        Stamp known = *stamp_;
        known->changedNanoseconds = (*stamp)->changedNanoseconds;
        if (known == *stamp) stamp_ = stamp;
    }
}

void QXProfilesManager::noteKept(const Result<std::optional<ProfileGeneration>>& kept) {
    isKept_ = kept.has_value();
    const std::string reason = kept ? "" : kept.error().localizedDescription;
    if (std::exchange(unkept_, reason) != reason && !kept) platform::log(reason);
}

Result<ProfilesRestoration> QXProfilesManager::restoreGeneration(std::uint64_t number) {
    platform::Journal::Course call("store", {{"call", "restore"}, {"identifier", {}}});
    auto restored = restore(number);
    call.setOk(restored.has_value());
    if (!restored || restored->wasPresent) return restored;
    const ProfilesDifference& difference = restored->difference;
    std::vector<std::string_view> names;
    if (!difference.added.empty()) names.push_back(ProfileAddedNotification);
    if (!difference.removed.empty()) names.push_back(ProfileDeletedNotification);
    // Another order of the profiles is a change too.
    if (!difference.changed.empty() || names.empty()) names.push_back(ProfileChangedNotification);
    platform::dispatchMain([names = std::move(names)] { std::ranges::for_each(names, announce); });
    return restored;
}

Result<ProfilesRestoration> QXProfilesManager::restore(std::uint64_t number) {
    FileManager& files = FileManager::defaultManager();
    const auto fileLock = files.lockExclusively(profilesPath, longestLockWait);
    if (!fileLock) return std::unexpected(fileLock.error());
    const auto present = takeOverFile();
    const auto kept = ProfileHistory::keep();
    if (!present && !kept) return std::unexpected(kept.error());
    const auto generation = ProfileHistory::generationOfNumber(number);
    if (!generation) return std::unexpected(generation.error());
    const auto bytes = ProfileHistory::bytes(*generation);
    if (!bytes) return std::unexpected(bytes.error());
    const auto restored = ProfileHistory::profiles(*generation);
    if (!restored) return std::unexpected(restored.error());

    const auto exists = files.stampAtPath(profilesPath);
    if (!exists) return std::unexpected(exists.error());
    const bool isAbsence = !*exists;
    ProfilesRestoration result{
        .difference = ProfilesDifference::between(present ? **present : ProfilesFile(), *restored)};
    if (isAbsence == generation->isAbsence) {
        const auto now = isAbsence ? platform::Data() : files.contentsAtPath(profilesPath);
        if (!now) return std::unexpected(now.error());
        result.wasPresent = *now == *bytes;
    }
    if (result.wasPresent) return result;
    const auto written = generation->isAbsence
                             ? files.removeItemAtPath(profilesPath)
                             : files.writeData_toFile(*bytes, profilesPath, platform::Write::Atomically);
    if (!written) return std::unexpected(written.error());
    const auto keptNow = ProfileHistory::keep();
    static_cast<void>(takeOverFile());
    const std::scoped_lock lock(mutex_);
    noteKept(keptNow);
    return result;
}

}  // namespace quietrix
