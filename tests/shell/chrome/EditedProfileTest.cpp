// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "shell/base/NotificationNames.h"
#include "shell/chrome/EditedProfile.h"
#include "tests/doubles/PluginPhone.h"

namespace quietrix {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class EditedProfile : public testing::Test {
  protected:
    EditedProfile() { profile_->setNewProfile(true); }

    /// The names of what happens while the profile is saved.
    std::vector<std::string> eventsOfSaving(const Saving& saving) {
        phone_.takeEvents();
        saveEditedProfile(*screen_, profile_, saving);
        phone_.drain();
        std::vector<std::string> names;
        for (const auto& event : phone_.takeEvents()) {
            const auto name = event.find("name");
            names.push_back((name == event.end() ? event.at("event") : name->second).stringOr());
        }
        return names;
    }

    doubles::PluginPhone phone_;
    std::shared_ptr<QXProfile> profile_ = QXProfile::defaultProfile();
    std::shared_ptr<platform::PSViewController> screen_ = std::make_shared<platform::PSViewController>();
};

TEST_F(EditedProfile, newOneThatIsLeft_isNeitherSavedNorAnnounced) {
    EXPECT_THAT(eventsOfSaving({.newProfile = NewProfile::IsLeft}), IsEmpty());
}

TEST_F(EditedProfile, newOneThatIsAnnounced_isNotSaved) {
    EXPECT_THAT(eventsOfSaving({.newProfile = NewProfile::IsAnnounced}),
                ElementsAre(ProfileDataUpdateNotification));
}

}  // namespace
}  // namespace quietrix
