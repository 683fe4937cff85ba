// SPDX-License-Identifier: MIT
#include "profile/model/QXProfilesManager.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "platform/foundation/DarwinNotificationCenter.h"
#include "platform/foundation/FileManager.h"
#include "platform/foundation/Journal.h"
#include "platform/foundation/LogSink.h"
#include "platform/foundation/RunLoop.h"
#include "profile/model/ProfilesFileChanges.h"
#include "shell/base/LocalNotifications.h"
#include "shell/base/NotificationNames.h"

namespace quietrix {

PLATFORM_REGISTER_CLASS(QXProfilesManager)

namespace {

using platform::Error;
using platform::failure;
using platform::FileManager;
using platform::Journal;
using platform::Result;
using platform::Value;

/// The one store of the process, made when it is first asked for.
struct SharedManager {
    std::mutex mutex;
    std::shared_ptr<QXProfilesManager> manager;

    static SharedManager& slot() {
        static SharedManager slot;
        return slot;
    }
};

std::string quoted(std::string_view text) {
    return '"' + std::string(text) + '"';
}

std::unexpected<Error> noSuchProfile(const ProfileEdit& edit) {
    return failure("There is no profile with the identifier " + quoted(edit.identifier()) + " in " +
                   quoted(profilesPath) + "; it may have been deleted.");
}

Result<void> add(ProfilesFile::Changes& changes, const ProfileEdit& edit) {
    const std::string identifier = edit.identifier();
    if (identifier.empty()) return failure("A profile without an identifier cannot be added.");
    if (changes.has(identifier)) {
        return failure("There is a profile with the identifier " + quoted(identifier) + " in " +
                       quoted(profilesPath) + " already.");
    }
    changes.add(edit.values);
    return {};
}

Result<void> update(ProfilesFile::Changes& changes, const ProfileEdit& edit) {
    const auto present = changes.values(edit.identifier());
    if (!present) return noSuchProfile(edit);
    changes.update(edit.identifier(), edit.appliedTo(*present));
    return {};
}

Result<void> remove(ProfilesFile::Changes& changes, const ProfileEdit& edit) {
    if (!changes.has(edit.identifier())) return noSuchProfile(edit);
    changes.remove(edit.identifier());
    return {};
}

Result<ProfilesFile> parsed(platform::Data bytes) {
    auto file = ProfilesFile::parse(std::move(bytes));
    if (file) return file;
    return failure("The profiles file " + quoted(profilesPath) + " cannot be used and is left as it is. " +
                   file.error().localizedDescription);
}

Journal::Course beginCall(std::string_view call, Value identifier) {
    return Journal::Course("store", {{"call", call}, {"identifier", std::move(identifier)}});
}

/// A profile to be deleted stays on the screens until it is gone, and the main thread may go on changing its
/// record: nothing of it but the identifier is read.
enum class HandsOver { WholeRecord, Identifier };

}  // namespace

struct QXProfilesManager::Kind {
    std::string_view call;
    std::string_view notification;
    HandsOver handsOver;
    Result<void> (*carryOut)(ProfilesFile::Changes& changes, const ProfileEdit& edit);
};

const QXProfilesManager::Kind QXProfilesManager::addition{"add", ProfileAddedNotification,
                                                          HandsOver::WholeRecord, add};
const QXProfilesManager::Kind QXProfilesManager::update{"update", ProfileChangedNotification,
                                                        HandsOver::WholeRecord, quietrix::update};
const QXProfilesManager::Kind QXProfilesManager::deletion{"delete", ProfileDeletedNotification,
                                                          HandsOver::Identifier, remove};

std::shared_ptr<QXProfilesManager> QXProfilesManager::sharedManager() {
    SharedManager& slot = SharedManager::slot();
    const std::scoped_lock lock(slot.mutex);
    if (!slot.manager) slot.manager = std::make_shared<QXProfilesManager>();
    return slot.manager;
}

void QXProfilesManager::resetSharedManager() {
    SharedManager& slot = SharedManager::slot();
    const std::scoped_lock lock(slot.mutex);
    slot.manager.reset();
}

void QXProfilesManager::reloadProfiles() {
    Journal::Course call = beginCall("reload", {});
    const auto file = takeOverFile();
    replaceChangedRecords();
    call.setOk(file.has_value());
}

Result<QXProfilesManager::File> QXProfilesManager::takeOverFile() {
    FileManager& files = FileManager::defaultManager();
    for (;;) {
        // The stamp is taken before the bytes: should the file change in between, the next look sees another
        // stamp.
        const Result<Stamp> stamp = files.stampAtPath(profilesPath);
        std::uint64_t generation = 0;
        {
            const std::scoped_lock lock(mutex_);
            if (!stamp) return keepWhatWasRead(stamp.error());
            if (stamp == stamp_) {
                unreadable_.clear();
                if (badFile_) return std::unexpected(*badFile_);
                return file_;
            }
            generation = generation_;
        }
        if (*stamp && (*stamp)->size > std::int64_t{ProfilesFile::largeSize}) {
            platform::log("The profiles file " + quoted(profilesPath) + " has " +
                          std::to_string((*stamp)->size) + " bytes, more than " +
                          std::to_string(ProfilesFile::largeSize >> 20) +
                          " MiB; reading it may take three times as much memory.");
        }
        // Moved from only where it holds bytes; what it says of a failure stays.
        auto bytes = *stamp ? files.contentsAtPath(profilesPath) : platform::Data();
        if (!bytes && files.stampAtPath(profilesPath) != stamp) continue;
        auto file = !bytes   ? std::unexpected(bytes.error())
                    : *stamp ? parsed(*std::move(bytes))
                             : ProfilesFile();

        const std::scoped_lock lock(mutex_);
        if (generation != generation_) continue;
        // Not remembered: it may be readable the next time, although no stamp will tell so.
        if (!bytes) return keepWhatWasRead(bytes.error());  // NOLINT(bugprone-use-after-move)
        if (!file) {
            install(file_, stamp);
            badFile_ = file.error();
            platform::log(badFile_->localizedDescription);
            return std::unexpected(*badFile_);
        }
        install(std::make_shared<const ProfilesFile>(*std::move(file)), stamp);
        records_.clear();
        reported_.clear();
        if (const std::size_t foreign = file_->foreignEntries()) {
            platform::log("The profiles file " + quoted(profilesPath) + " holds " + std::to_string(foreign) +
                          " entries that are no profiles; they are left as they are.");
        }
        return file_;
    }
}

std::unexpected<Error> QXProfilesManager::keepWhatWasRead(const Error& error) {
    const std::string& reason = error.localizedDescription;
    if (std::exchange(unreadable_, reason) != reason) platform::log(reason);
    return std::unexpected(error);
}

void QXProfilesManager::install(File file, const Result<Stamp>& stamp) {
    file_ = std::move(file);
    inOrder_.clear();
    stamp_ = stamp;
    badFile_.reset();
    unreadable_.clear();
    isKept_ = false;
    ++generation_;
}

void QXProfilesManager::replaceChangedRecords() {
    const auto entries = changed_->take();
    // Let go of after the mutex.
    std::vector<std::shared_ptr<platform::Object>> records;
    records.reserve(entries.size());
    for (const ChangedProfiles::Entry& entry : entries) records.push_back(entry.record.lock());
    const std::scoped_lock lock(mutex_);
    std::vector<std::string> changed;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const auto current = records_.find(entries[i].identifier);
        if (current != records_.end() && current->second == records[i])
            changed.push_back(entries[i].identifier);
    }
    letGo(changed);
}

void QXProfilesManager::letGo(const std::vector<std::string>& identifiers) {
    std::unordered_set<std::shared_ptr<QXProfile>> gone;
    for (const std::string& identifier : identifiers) {
        const auto record = records_.find(identifier);
        if (record == records_.end()) continue;
        gone.insert(std::move(record->second));
        records_.erase(record);
    }
    if (gone.empty()) return;
    std::ranges::replace_if(inOrder_, [&](const auto& record) { return gone.contains(record); }, nullptr);
}

const QXProfilesManager::Records& QXProfilesManager::recordsInOrder() {
    const std::vector<ProfilesFile::Profile> profiles = file_->profiles();
    inOrder_.resize(profiles.size());
    records_.reserve(profiles.size());
    for (std::size_t i = 0; i < profiles.size(); ++i) {
        if (!inOrder_[i]) inOrder_[i] = record(profiles[i]);
    }
    return inOrder_;
}

QXProfilesManager::Records QXProfilesManager::profilesThatAre(bool enabled) {
    // A failure has been reported; the store then answers from what it held before.
    static_cast<void>(takeOverFile());
    const std::scoped_lock lock(mutex_);
    Records result;
    std::ranges::copy_if(
        recordsInOrder(), std::back_inserter(result),
        [&](const std::shared_ptr<QXProfile>& each) { return each->isEnabled() == enabled; });
    return result;
}

QXProfilesManager::Records QXProfilesManager::enabledProfiles() {
    return profilesThatAre(true);
}

QXProfilesManager::Records QXProfilesManager::disabledProfiles() {
    return profilesThatAre(false);
}

Result<QXProfilesManager::Records> QXProfilesManager::presentProfiles() {
    if (const auto file = takeOverFile(); !file) return std::unexpected(file.error());
    const std::scoped_lock lock(mutex_);
    return recordsInOrder();
}

std::shared_ptr<QXProfile> QXProfilesManager::profileByIdentifier_shouldReload(std::string_view identifier,
                                                                               bool shouldReload) {
    if (shouldReload) {
        reloadProfiles();
    } else {
        static_cast<void>(takeOverFile());
    }
    const std::scoped_lock lock(mutex_);
    const auto profile = file_->find(identifier);
    return profile ? record(*profile) : nullptr;
}

std::shared_ptr<QXProfile> QXProfilesManager::record(ProfilesFile::Profile profile) {
    const std::string identifier = file_->identifier(profile);
    std::shared_ptr<QXProfile>& record = records_[identifier];
    if (!record) {
        // A record made once more from a file that was read already has nothing new to tell.
        const bool wasReported = reported_.contains(identifier);
        record = QXProfile::profileWithValues(file_->values(profile), [&](const std::string& line) {
            if (!wasReported) platform::log(line);
            reported_.insert(identifier);
        });
        record->reportChangesTo(changed_);
    }
    return record;
}

void QXProfilesManager::announce(std::string_view notification) {
    postLocally(notification);
    platform::CFNotificationCenterPostNotification(platform::CFNotificationCenterGetDarwinNotifyCenter(),
                                                   notification, nullptr, {}, true);
}

void QXProfilesManager::addProfile_success_failure(const std::shared_ptr<QXProfile>& profile, Success success,
                                                   Failure failure) {
    change(addition, profile, std::move(success), std::move(failure));
}

void QXProfilesManager::updateProfile_success_failure(const std::shared_ptr<QXProfile>& profile,
                                                      Success success, Failure failure) {
    change(update, profile, std::move(success), std::move(failure));
}

void QXProfilesManager::deleteProfile_success_failure(const std::shared_ptr<QXProfile>& profile,
                                                      Success success, Failure failure) {
    change(deletion, profile, std::move(success), std::move(failure));
}

void QXProfilesManager::change(const Kind& kind, const std::shared_ptr<QXProfile>& profile, Success success,
                               Failure failure) {
    Journal::Course call = beginCall(kind.call, profile ? Value(profile->identifier()) : Value());
    const Result<void> result =
        profile
            ? handOver(kind, *profile)
            : platform::failure("There is no profile to " + std::string(kind.call) + ": the record is nil.");
    call.setOk(result.has_value());
    if (result) {
        platform::dispatchMain([success = std::move(success), name = kind.notification] {
            if (success) success();
            announce(name);
        });
    } else if (failure) {
        platform::dispatchMain([failure = std::move(failure), error = result.error()] { failure(error); });
    }
}

ProfileEdit QXProfilesManager::editFor(const Kind& kind, QXProfile& profile) {
    if (kind.handsOver == HandsOver::WholeRecord) return profile.edit();
    return {.values = {{"identifier", profile.identifier()}}, .set = {}};
}

Result<void> QXProfilesManager::handOver(const Kind& kind, QXProfile& profile) {
    const ProfileEdit edit = editFor(kind, profile);
    Result<void> result = apply(kind, edit);
    if (result && kind.handsOver == HandsOver::WholeRecord) profile.wasStored(edit);
    return result;
}

Result<void> QXProfilesManager::apply(const Kind& kind, const ProfileEdit& edit) {
    const auto fileLock = FileManager::defaultManager().lockExclusively(profilesPath, longestLockWait);
    if (!fileLock) return std::unexpected(fileLock.error());
    const auto present = takeOverFile();
    if (!present) return std::unexpected(present.error());
    ProfilesFile::Changes changes(**present);
    if (const auto made = kind.carryOut(changes, edit); !made) return made;
    auto next = changes.finish();
    if (!next) return std::unexpected(next.error());
    // An update leaves the order as it is, an addition is at its end.
    return replace(*present, *std::move(next), {edit.identifier()},
                   &kind == &deletion ? Order::Changed : Order::Kept);
}

Result<void> QXProfilesManager::replace(const File& present, ProfilesFile next,
                                        const std::vector<std::string>& changed, Order order) {
    FileManager& files = FileManager::defaultManager();
    const auto file = std::make_shared<const ProfilesFile>(std::move(next));
    keepWhatWasFound();
    const auto written = files.writeData_toFile(file->bytes(), profilesPath, platform::Write::Atomically);
    if (!written) return written;
    // Before the stamp is taken, which that changes.
    const auto kept = ProfileHistory::keep(&file->bytes());
    const Result<Stamp> stamp = files.stampAtPath(profilesPath);

    const std::scoped_lock lock(mutex_);
    // Another thread's reload may have taken over the written file already.
    const bool isNext = file_ == present;
    if (isNext) {
        letGo(changed);
    } else {
        records_.clear();
    }
    auto inOrder = isNext && order == Order::Kept ? std::move(inOrder_) : Records();
    install(file, stamp);
    inOrder_ = std::move(inOrder);
    noteKept(kept);
    return {};
}

// Several changes as one

const QXProfilesManager::Kind& QXProfilesManager::kindOf(Change::Kind kind) {
    if (kind == Change::Kind::Add) return addition;
    return kind == Change::Kind::Update ? update : deletion;
}

void QXProfilesManager::changeProfiles(const Plan& plan, Success success, Failure failure) {
    Journal::Course call = beginCall("change", {});
    auto kinds = carryOut(plan);
    call.setOk(kinds.has_value());
    if (kinds) {
        platform::dispatchMain([success = std::move(success), kinds = *std::move(kinds)] {
            if (success) success();
            for (const Kind* kind : kinds) announce(kind->notification);
        });
    } else if (failure) {
        platform::dispatchMain([failure = std::move(failure), error = kinds.error()] { failure(error); });
    }
}

Result<std::vector<const QXProfilesManager::Kind*>> QXProfilesManager::carryOut(const Plan& plan) {
    const auto fileLock = FileManager::defaultManager().lockExclusively(profilesPath, longestLockWait);
    if (!fileLock) return std::unexpected(fileLock.error());
    const auto present = takeOverFile();
    if (!present) return std::unexpected(present.error());
    Records records;
    for (const ProfilesFile::Profile profile : (*present)->profiles()) {
        // Those that are handed out have told what is wrong with the values.
        records.push_back(
            QXProfile::profileWithValues((*present)->values(profile), [](const std::string&) {}));
    }
    const auto changes = plan(records);
    if (!changes) return std::unexpected(changes.error());
    if (changes->empty()) return std::vector<const Kind*>();

    ProfilesFile::Changes edits(**present);
    std::vector<std::string> changed;
    for (const Change& change : *changes) {
        if (!change.profile)
            return platform::failure("There is no profile to " + std::string(kindOf(change.kind).call) +
                                     ": the record is nil.");
        const ProfileEdit edit = editFor(kindOf(change.kind), *change.profile);
        if (const auto made = kindOf(change.kind).carryOut(edits, edit); !made)
            return std::unexpected(made.error());
        changed.push_back(edit.identifier());
    }
    auto next = edits.finish();
    if (!next) return std::unexpected(next.error());
    const auto has = [&](Change::Kind kind) {
        return std::ranges::find(*changes, kind, &Change::kind) != changes->end();
    };
    const auto replaced = replace(*present, *std::move(next), changed,
                                  has(Change::Kind::Delete) ? Order::Changed : Order::Kept);
    if (!replaced) return std::unexpected(replaced.error());
    std::vector<const Kind*> kinds;
    for (const Change::Kind kind : {Change::Kind::Add, Change::Kind::Update, Change::Kind::Delete}) {
        if (has(kind)) kinds.push_back(&kindOf(kind));
    }
    return kinds;
}

}  // namespace quietrix
