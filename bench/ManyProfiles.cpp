// SPDX-License-Identifier: MIT
#include "bench/ManyProfiles.h"

#include <utility>

#include "platform/foundation/PropertyList.h"
#include "profile/model/QXProfile.h"

namespace bench {

std::string profileIdentifier(std::int64_t number) {
    return "profile-" + std::to_string(number);
}

platform::Value manyProfiles(std::int64_t count) {
    platform::Array all;
    for (std::int64_t i = 0; i < count; ++i) {
        const std::string number = std::to_string(i);
        quietrix::QXProfile profile;
        profile.setIdentifier(profileIdentifier(i));
        profile.setTitle("Größe " + number);
        profile.setEnabled(i % 2 == 0);
        profile.setStartTime("10:" + std::to_string(10 + i % 50) + " PM");
        profile.setEndTime("07:00 AM");
        profile.setPlayBackVolume(0.25 * static_cast<double>(i % 5));
        profile.setRingerVolume(0.001 * static_cast<double>(i));
        profile.setVibrate(i % 3 == 0);
        profile.setPlayAlert(i % 5 == 0);
        profile.setAlertToneIdentifier("texttone:Chord");
        profile.setApplyProfileEventStatus(i % 4);
        profile.setWifiNetworks({"home", "work " + std::to_string(i % 7)});
        profile.setCalendarIdentifiers({"Home", "Work " + std::to_string(i % 11), "Holidays"});
        all.emplace_back(profile.storedValues());
    }
    return platform::Dictionary{{"format", 1}, {"profiles", std::move(all)}};
}

platform::Data manyProfilesFile(std::int64_t count) {
    return platform::PropertyListSerialization::dataWithPropertyList(manyProfiles(count),
                                                                     platform::PropertyListFormat::Binary)
        .value();
}

}  // namespace bench
