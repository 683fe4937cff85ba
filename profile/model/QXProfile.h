// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "platform/foundation/KeyValueCoding.h"
#include "platform/foundation/LogSink.h"
#include "platform/foundation/Object.h"
#include "profile/model/KeyIdentity.h"
#include "profile/model/ProfileEdit.h"

namespace quietrix {

class ChangedProfiles;

/// One rule of the user's: when it applies and what it does meanwhile. A mutable record that the screens edit
/// and then hand to QXProfilesManager; changing it changes nothing in the store. Its keys, their types and
/// their defaults stand in the table of QXProfileKeys.cpp. Main thread.
///
/// A record remembers which of its keys were set since it was made, through a setter or key-value access and
/// whatever the value, so that saving it leaves alone what nobody touched here.
class QXProfile : public platform::Object, public platform::KeyValueCoding {
    PLATFORM_CLASS(QXProfile, platform::Object)

  public:
    /// The defaults of every key, and no identifier.
    QXProfile();
    /// What a new profile starts as: the defaults, a localised title and a fresh identifier (a random UUID).
    static std::shared_ptr<QXProfile> defaultProfile();
    using Report = std::function<void(const std::string& line)>;
    /// The record of a dictionary as storedValues() gives it; none of its keys counts as set. A missing key
    /// takes its default, and so does one whose value has the wrong type; of a list with elements of other
    /// types it takes the strings. Either is reported in one line. Keys that no profile has are passed over.
    /// Any thread.
    static std::shared_ptr<QXProfile> profileWithValues(const platform::Dictionary& values,
                                                        const Report& report = platform::log);
    /// What is kept of the record in the profiles file; a nil value is left out.
    platform::Dictionary storedValues() const;
    /// What the record hands over to be saved.
    ProfileEdit edit() const;
    /// What was handed over is in the file now and counts as what the record was made from; keys that were
    /// set after the hand-over stay set.
    void wasStored(const ProfileEdit& edit);

    platform::Value valueForKey(std::string_view key) const override;
    void setValue_forKey(const platform::Value& value, std::string_view key) override;

    const std::string& identifier() const { return identifier_; }
    void setIdentifier(std::string identifier) {
        assign<&QXProfile::setIdentifier>(identifier_, std::move(identifier));
    }
    const std::string& title() const { return title_; }
    void setTitle(std::string title) { assign<&QXProfile::setTitle>(title_, std::move(title)); }
    bool isEnabled() const { return enabled_; }
    void setEnabled(bool enabled) { assign<&QXProfile::setEnabled>(enabled_, enabled); }
    bool isAllDay() const { return allDay_; }
    void setAllDay(bool allDay) { assign<&QXProfile::setAllDay>(allDay_, allDay); }

    /// Times of day as "h:mm a" gives them; stored as they are given.
    const std::string& startTime() const { return startTime_; }
    void setStartTime(std::string time) { assign<&QXProfile::setStartTime>(startTime_, std::move(time)); }
    const std::string& endTime() const { return endTime_; }
    void setEndTime(std::string time) { assign<&QXProfile::setEndTime>(endTime_, std::move(time)); }
    /// The same on the formatter's reference day; empty for a text that is no time of day.
    std::optional<platform::Date> startDate() const;
    std::optional<platform::Date> endDate() const;

    /// 0.0 to 1.0, which nobody checks: a volume is stored as it is given, but for NaN, which changes
    /// nothing.
    double playBackVolume() const { return playBackVolume_; }
    void setPlayBackVolume(double volume);
    double ringerVolume() const { return ringerVolume_; }
    void setRingerVolume(double volume);
    bool vibrate() const { return vibrate_; }
    void setVibrate(bool vibrate) { assign<&QXProfile::setVibrate>(vibrate_, vibrate); }

    bool isPlayAlert() const { return playAlert_; }
    void setPlayAlert(bool play) { assign<&QXProfile::setPlayAlert>(playAlert_, play); }
    /// Kind, colon, name; empty is no tone.
    const std::optional<std::string>& alertToneIdentifier() const { return alertToneIdentifier_; }
    void setAlertToneIdentifier(std::optional<std::string> tone) {
        assign<&QXProfile::setAlertToneIdentifier>(alertToneIdentifier_, std::move(tone));
    }
    bool vibrateAlert() const { return vibrateAlert_; }
    void setVibrateAlert(bool vibrate) { assign<&QXProfile::setVibrateAlert>(vibrateAlert_, vibrate); }
    bool wakeUpScreen() const { return wakeUpScreen_; }
    void setWakeUpScreen(bool wake) { assign<&QXProfile::setWakeUpScreen>(wakeUpScreen_, wake); }
    bool dnDEnabled() const { return dnDEnabled_; }
    void setDnDEnabled(bool enabled) { assign<&QXProfile::setDnDEnabled>(dnDEnabled_, enabled); }
    bool showOnStatusBar() const { return showOnStatusBar_; }
    void setShowOnStatusBar(bool show) { assign<&QXProfile::setShowOnStatusBar>(showOnStatusBar_, show); }

    /// The SSIDs of the networks on which the profile applies.
    const std::vector<std::string>& wifiNetworks() const { return wifiNetworks_; }
    void setWifiNetworks(std::vector<std::string> ssids) {
        assign<&QXProfile::setWifiNetworks>(wifiNetworks_, std::move(ssids));
    }
    bool hasWiFiNetwork(std::string_view ssid) const;
    /// At the end; one that is there already is not added again.
    void addToWiFiNetwork(std::string_view ssid);
    /// One that is not there changes nothing.
    void removeFromWiFiNetwork(std::string_view ssid);

    /// Empty means all calendars.
    const std::vector<std::string>& calendarIdentifiers() const { return calendarIdentifiers_; }
    void setCalendarIdentifiers(std::vector<std::string> list) {
        assign<&QXProfile::setCalendarIdentifiers>(calendarIdentifiers_, std::move(list));
    }
    /// The same list, to be changed in place. Counts as a change of the record, so ask for it only to make
    /// one; the reference is for use at once, not for keeping.
    std::vector<std::string>& mutableCalendarIdentifiers();
    bool allDayEventsIgnored() const { return allDayEventsIgnored_; }
    void setAllDayEventsIgnored(bool ignored) {
        assign<&QXProfile::setAllDayEventsIgnored>(allDayEventsIgnored_, ignored);
    }
    /// 0 all, 1 accepted, 2 tentative, 3 declined or cancelled; others are stored as they are given.
    std::int64_t applyProfileEventStatus() const { return applyProfileEventStatus_; }
    void setApplyProfileEventStatus(std::int64_t status) {
        assign<&QXProfile::setApplyProfileEventStatus>(applyProfileEventStatus_, status);
    }
    /// The localised name of the status; empty for a status that has none.
    std::string applyProfileEventStatusString() const;

    /// Whether the record was made here and is not in the store yet.
    bool isNewProfile() const { return newProfile_; }
    void setNewProfile(bool isNew) { assign<&QXProfile::setNewProfile>(newProfile_, isNew); }

    /// From now on the record's first change, or the first setting of a key to the value that it has, is
    /// reported there. The store calls it before it hands the record out.
    void reportChangesTo(std::shared_ptr<ChangedProfiles> changed) { changed_ = std::move(changed); }

  private:
    using TextList = std::vector<std::string>;
    /// What is remembered of a key that was set.
    struct Setting {
        /// The last one's number among all settings of the record.
        std::uint64_t number;
        /// A list as it was before the first one; empty for other keys.
        TextList base;
    };

    template <auto setter, class Field, class T>
    void assign(Field& field, T value) {
        willSet<setter>(field);
        field = std::move(value);
    }
    template <auto setter, class Field>
    void willSet(const Field& field) {
        if constexpr (std::is_same_v<Field, TextList>) {
            willSet(keyIdentity<setter>(), field);
        } else {
            willSet(keyIdentity<setter>(), {});
        }
    }
    void willSet(KeyIdentity key, const TextList& present);
    static std::optional<platform::Date> dateOfTime(const std::string& time);

    // The store sorts records by it on whatever thread asks, while the main thread may be changing it.
    std::atomic<bool> enabled_{false};
    bool allDay_ = false;
    bool vibrate_ = false;
    bool playAlert_ = false;
    bool vibrateAlert_ = false;
    bool wakeUpScreen_ = false;
    bool dnDEnabled_ = false;
    bool showOnStatusBar_ = false;
    bool allDayEventsIgnored_ = false;
    bool newProfile_ = false;
    double playBackVolume_ = 0.0;
    double ringerVolume_ = 0.0;
    std::int64_t applyProfileEventStatus_ = 0;
    std::string identifier_;
    std::string title_;
    std::string startTime_;
    std::string endTime_;
    std::optional<std::string> alertToneIdentifier_;
    std::vector<std::string> wifiNetworks_;
    std::vector<std::string> calendarIdentifiers_;
    /// Off while the record is filled with what it is made from.
    bool remembersSettings_ = false;
    std::map<KeyIdentity, Setting> set_;
    std::uint64_t settings_ = 0;
    std::shared_ptr<ChangedProfiles> changed_;
};

}  // namespace quietrix
