// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "profile/model/QXProfilesManager.h"
#include "tests/doubles/PluginPhone.h"
#include "tests/doubles/ScreenFixture.h"

namespace doubles {

template <class Screen>
using PluginScreenFixture = ScreenFixture<Screen, PluginPhone>;

/// A phone with one of the plug-in's screens for one profile: a test sets `profile_` up, stores it unless it
/// is a new one, and opens the screen with it.
template <class Screen>
class ProfileScreenFixture : public PluginScreenFixture<Screen> {
  protected:
    /// Puts the profile into the store, and goes on with the store's own record. A new profile stays as it
    /// is.
    void storeProfile() {
        if (profile_->isNewProfile()) return;
        store()->addProfile_success_failure(profile_, nullptr, nullptr);
        this->phone_.drain();
        profile_ = required(stored(false));
    }
    /// The store's record of the profile; null when it has none.
    std::shared_ptr<quietrix::QXProfile> stored(bool reload = true) {
        return store()->profileByIdentifier_shouldReload(profile_->identifier(), reload);
    }
    /// Stores the value as another process would, of which the screen knows nothing yet.
    void storeElsewhere(std::string_view key, const platform::Value& value) {
        const auto theirs = quietrix::QXProfile::profileWithValues(profile_->storedValues());
        theirs->setValue_forKey(value, key);
        store()->updateProfile_success_failure(theirs, nullptr, nullptr);
    }
    void deleteElsewhere() {
        store()->deleteProfile_success_failure(
            quietrix::QXProfile::profileWithValues(profile_->storedValues()), nullptr, nullptr);
    }
    /// From now on the profiles cannot be written.
    void failWrites() {
        this->phone_.files->failWrites("No space left on device", std::string(quietrix::profilesPath));
    }
    /// How many calls the store has answered since the last look.
    std::size_t storeCalls() {
        this->phone_.drain();
        return this->phone_.takeEvents("store").size();
    }

    std::shared_ptr<quietrix::QXProfile> profile_ = quietrix::QXProfile::defaultProfile();

  private:
    static std::shared_ptr<quietrix::QXProfilesManager> store() {
        return quietrix::QXProfilesManager::sharedManager();
    }
};

}  // namespace doubles
