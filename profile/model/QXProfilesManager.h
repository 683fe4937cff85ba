// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "platform/foundation/Error.h"
#include "platform/foundation/FileSystem.h"
#include "platform/foundation/Object.h"
#include "profile/model/ChangedProfiles.h"
#include "profile/model/ProfileEdit.h"
#include "profile/model/ProfileHistory.h"
#include "profile/model/ProfilesDifference.h"
#include "profile/model/ProfilesFile.h"
#include "profile/model/ProfilesPath.h"
#include "profile/model/QXProfile.h"

namespace quietrix {

/// What going back to an earlier state of the profiles file did.
struct ProfilesRestoration {
    /// The file was in that state; nothing was done and nothing is posted.
    bool wasPresent = false;
    /// From the state before to the one that was gone back to. A file that could not be used before counts as
    /// one without profiles.
    ProfilesDifference difference;
};

/// The store of all profiles. What it holds is the profiles file as it was last read or written; each
/// question looks first whether the file is still that one, and takes it over when it is not. It may be
/// called from any thread.
///
/// The records that it hands out are the callers' to change: the store never alters one. Asked again for the
/// same profile it gives the same record until the profile is saved or reloaded or the file has changed; from
/// then on it gives a new one with the file's values.
///
/// A file that is not there means no profiles. One that cannot be looked at, read or understood is reported
/// in one log line; the store then keeps what it had, and no change goes into the file.
class QXProfilesManager : public platform::Object {
    PLATFORM_CLASS(QXProfilesManager, platform::Object)

  public:
    using Success = std::function<void()>;
    using Failure = std::function<void(const platform::Error&)>;
    using Records = std::vector<std::shared_ptr<QXProfile>>;
    /// One of several changes that are made together.
    struct Change {
        enum class Kind { Add, Update, Delete };
        Kind kind;
        std::shared_ptr<QXProfile> profile;
    };
    /// Says what is to be changed, from the profiles as the file has them, in its order. The records are its
    /// own, to be changed and handed back. It is called on the caller's thread while the file is locked, so
    /// it waits for nobody and asks the store nothing. An error changes nothing and is the failure's.
    using Plan = std::function<platform::Result<std::vector<Change>>(const Records& present)>;

    QXProfilesManager() = default;
    /// The one store of the process.
    static std::shared_ptr<QXProfilesManager> sharedManager();
    /// Lets go of the one store; the next call of sharedManager() makes another. For tests, between cases.
    static void resetSharedManager();

    /// Takes over the file as it is now. Reads it only when it has changed since it was last read or written;
    /// otherwise just those records are replaced, in the store, that were changed since they were handed out.
    void reloadProfiles();

    /// In the file's order.
    Records enabledProfiles();
    Records disabledProfiles();
    /// All of them in the file's order, as one state of the file has them. The error says why the file cannot
    /// be used, where the questions above answer from what was last read.
    platform::Result<Records> presentProfiles();
    /// The current record of that identifier, or empty.
    std::shared_ptr<QXProfile> profileByIdentifier_shouldReload(std::string_view identifier,
                                                                bool shouldReload);

    /// Each of these makes one change: it locks the file against all others (for at most 2 seconds), takes
    /// over what they wrote meanwhile, applies the change to it and writes it in one piece and durably before
    /// it returns.
    ///
    /// An update writes what was changed: the keys that were set on the record since it was made, lists
    /// element by element; all others keep the values that the file has by then. Once the file holds it, what
    /// was handed over counts as what the record was made from.
    ///
    /// Exactly one of the callbacks, either of which may be empty, is then queued for the main thread. After
    /// the success callback follow a notification of the change in the local centre (no object) and one of
    /// the same name system-wide. The failure's sentence names what is wrong, and where; as all messages of
    /// the system it is in English.
    ///
    /// The record is read on the caller's thread, of one to be deleted only the identifier. A nil one fails;
    /// one that has no identifier, or one that another profile has, cannot be added; one that the file no
    /// longer holds can be neither updated nor deleted.
    void addProfile_success_failure(const std::shared_ptr<QXProfile>& profile, Success success,
                                    Failure failure);
    void updateProfile_success_failure(const std::shared_ptr<QXProfile>& profile, Success success,
                                       Failure failure);
    void deleteProfile_success_failure(const std::shared_ptr<QXProfile>& profile, Success success,
                                       Failure failure);

    /// Makes the changes of the plan as one: all of them or none, in one writing of the file under one lock.
    /// Each is what it would be alone, in the state that those before it have left. No changes are a success
    /// that writes and announces nothing. After the success callback each kind of change that was among them
    /// is announced once: added, changed, deleted.
    void changeProfiles(const Plan& plan, Success success, Failure failure);

    /// Goes back to the state of that number in the ProfileHistory. One change as those above: under the
    /// lock, the generation's bytes become the file, merged with nothing; a generation without a file removes
    /// it. The state before is kept first, and the new one afterwards, so that it can be taken back. Then the
    /// notifications of what was added, changed and removed are queued for the main thread.
    ///
    /// Nothing is changed when there is no such number, or when that state is lost or no profiles file. A
    /// file that cannot be used, which no other change touches, is replaced too, but only once it is kept.
    platform::Result<ProfilesRestoration> restoreGeneration(std::uint64_t number);

  private:
    static constexpr double longestLockWait = 2.0;
    using File = std::shared_ptr<const ProfilesFile>;
    /// Empty for the file that is not there.
    using Stamp = std::optional<platform::FileStamp>;
    /// One of the three kinds of change.
    struct Kind;
    /// Whether the profiles that were there stand where they stood.
    enum class Order { Kept, Changed };
    static const Kind addition;
    static const Kind update;
    static const Kind deletion;

    /// Posts the name in the local centre and system-wide. Main thread.
    static void announce(std::string_view notification);
    void change(const Kind& kind, const std::shared_ptr<QXProfile>& profile, Success success,
                Failure failure);
    platform::Result<void> handOver(const Kind& kind, QXProfile& profile);
    platform::Result<void> apply(const Kind& kind, const ProfileEdit& edit);
    platform::Result<std::vector<const Kind*>> carryOut(const Plan& plan);
    static const Kind& kindOf(Change::Kind kind);
    static ProfileEdit editFor(const Kind& kind, QXProfile& profile);
    /// The file's lock is held. Writes what comes after the present state and takes it over.
    platform::Result<void> replace(const File& present, ProfilesFile next,
                                   const std::vector<std::string>& changed, Order order);
    platform::Result<ProfilesRestoration> restore(std::uint64_t number);
    /// Keeps what somebody else has written since the last change here. The file is locked.
    void keepWhatWasFound();
    /// A state that cannot be kept is logged, and is no reason for a change to fail. The mutex is held.
    void noteKept(const platform::Result<std::optional<ProfileGeneration>>& kept);
    /// The file as it is now, which the store has taken over.
    platform::Result<File> takeOverFile();
    std::unexpected<platform::Error> keepWhatWasRead(const platform::Error& error);
    /// The mutex is held for these two.
    void install(File file, const platform::Result<Stamp>& stamp);
    std::shared_ptr<QXProfile> record(ProfilesFile::Profile profile);
    void replaceChangedRecords();
    /// The mutex is held. Has the records of these identifiers made anew when they are next asked for.
    void letGo(const std::vector<std::string>& identifiers);
    /// The mutex is held.
    const Records& recordsInOrder();
    Records profilesThatAre(bool enabled);

    /// Held for looking at and replacing the members below, never while a file is read, written or waited
    /// for.
    std::mutex mutex_;
    File file_ = std::make_shared<ProfilesFile>();
    /// Of the file when it was last read or written; a failure until then, and when it could not be had.
    platform::Result<Stamp> stamp_ = platform::failure("The file has not been looked at.");
    /// Counts the replacements of the file, so that a slow reader does not put an older state over a newer
    /// one.
    std::uint64_t generation_ = 0;
    /// Why the file at this stamp is of no use, while it is not.
    std::optional<platform::Error> badFile_;
    /// What was last reported of a file that could not even be looked at or read.
    std::string unreadable_;
    /// Whether the file in that state is in its history, and what was last logged of one that is not.
    bool isKept_ = false;
    std::string unkept_;
    /// The profiles of whose values something was reported since the file was read.
    std::unordered_set<std::string> reported_;
    /// The records in use, by the identifiers of the profiles they were made for.
    std::unordered_map<std::string, std::shared_ptr<QXProfile>> records_;
    /// All of them in the file's order; empty until it is asked for. A null one is to be made anew.
    Records inOrder_;
    std::shared_ptr<ChangedProfiles> changed_ = std::make_shared<ChangedProfiles>();
};

}  // namespace quietrix
