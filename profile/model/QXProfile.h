// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/foundation/KeyValueCoding.h"
#include "platform/foundation/Object.h"

namespace quietrix {

class ChangedProfiles;

/// One rule of the user's: when it applies and what it does meanwhile. A mutable record that the screens edit
/// and then hand to QXProfilesManager; changing it changes nothing in the store. Its keys, their types and
/// their defaults stand in the table of QXProfileKeys.cpp. Main thread.
class QXProfile : public platform::Object, public platform::KeyValueCoding {
    PLATFORM_CLASS(QXProfile, platform::Object)

  public:
    /// The defaults of every key, and no identifier.
    QXProfile();
    /// What a new profile starts as: the defaults, a localised title and a fresh identifier (a random UUID).
    static std::shared_ptr<QXProfile> defaultProfile();
    /// The record of a dictionary as storedValues() gives it. A missing key takes its default, and so does
    /// one whose value has the wrong type (one log line); keys that no profile has are passed over. Any
    /// thread.
    static std::shared_ptr<QXProfile> profileWithValues(const platform::Dictionary& values);
    /// What is kept of the record in the profiles file; a nil value is left out.
    platform::Dictionary storedValues() const;

    platform::Value valueForKey(std::string_view key) const override;
    void setValue_forKey(const platform::Value& value, std::string_view key) override;

    const std::string& identifier() const { return identifier_; }
    void setIdentifier(std::string identifier) { assign(identifier_, std::move(identifier)); }
    const std::string& title() const { return title_; }
    void setTitle(std::string title) { assign(title_, std::move(title)); }
    bool isEnabled() const { return enabled_; }
    void setEnabled(bool enabled) { assign(enabled_, enabled); }
    bool isAllDay() const { return allDay_; }
    void setAllDay(bool allDay) { assign(allDay_, allDay); }

    /// Times of day as "h:mm a" gives them; stored as they are given.
    const std::string& startTime() const { return startTime_; }
    void setStartTime(std::string time) { assign(startTime_, std::move(time)); }
    const std::string& endTime() const { return endTime_; }
    void setEndTime(std::string time) { assign(endTime_, std::move(time)); }
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
    void setVibrate(bool vibrate) { assign(vibrate_, vibrate); }

    bool isPlayAlert() const { return playAlert_; }
    void setPlayAlert(bool play) { assign(playAlert_, play); }
    /// Kind, colon, name; empty is no tone.
    const std::optional<std::string>& alertToneIdentifier() const { return alertToneIdentifier_; }
    void setAlertToneIdentifier(std::optional<std::string> tone) {
        assign(alertToneIdentifier_, std::move(tone));
    }
    bool vibrateAlert() const { return vibrateAlert_; }
    void setVibrateAlert(bool vibrate) { assign(vibrateAlert_, vibrate); }
    bool wakeUpScreen() const { return wakeUpScreen_; }
    void setWakeUpScreen(bool wake) { assign(wakeUpScreen_, wake); }
    bool dnDEnabled() const { return dnDEnabled_; }
    void setDnDEnabled(bool enabled) { assign(dnDEnabled_, enabled); }
    bool showOnStatusBar() const { return showOnStatusBar_; }
    void setShowOnStatusBar(bool show) { assign(showOnStatusBar_, show); }

    /// The SSIDs of the networks on which the profile applies.
    const std::vector<std::string>& wifiNetworks() const { return wifiNetworks_; }
    void setWifiNetworks(std::vector<std::string> ssids) { assign(wifiNetworks_, std::move(ssids)); }
    bool hasWiFiNetwork(std::string_view ssid) const;
    /// At the end; one that is there already is not added again.
    void addToWiFiNetwork(std::string_view ssid);
    /// One that is not there changes nothing.
    void removeFromWiFiNetwork(std::string_view ssid);

    /// Empty means all calendars.
    const std::vector<std::string>& calendarIdentifiers() const { return calendarIdentifiers_; }
    void setCalendarIdentifiers(std::vector<std::string> list) {
        assign(calendarIdentifiers_, std::move(list));
    }
    /// The same list, to be changed in place. Counts as a change of the record, so ask for it only to make
    /// one; the reference is for use at once, not for keeping.
    std::vector<std::string>& mutableCalendarIdentifiers();
    bool allDayEventsIgnored() const { return allDayEventsIgnored_; }
    void setAllDayEventsIgnored(bool ignored) { assign(allDayEventsIgnored_, ignored); }
    /// 0 all, 1 accepted, 2 tentative, 3 declined or cancelled; others are stored as they are given.
    std::int64_t applyProfileEventStatus() const { return applyProfileEventStatus_; }
    void setApplyProfileEventStatus(std::int64_t status) { assign(applyProfileEventStatus_, status); }
    /// The localised name of the status; empty for a status that has none.
    std::string applyProfileEventStatusString() const;

    /// Whether the record was made here and is not in the store yet.
    bool isNewProfile() const { return newProfile_; }
    void setNewProfile(bool isNew) { assign(newProfile_, isNew); }

    /// How often the record was changed since it was made or read; setting a value that is there already is
    /// no change.
    std::uint64_t revision() const { return revision_; }
    /// From now on the record's first change is reported there. The store calls it before it hands the record
    /// out.
    void reportChangesTo(std::shared_ptr<ChangedProfiles> changed) { changed_ = std::move(changed); }

  private:
    template <class Field, class T>
    void assign(Field& field, T value) {
        if (field == value) return;
        willChange();
        field = std::move(value);
    }
    void willChange();
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
    std::uint64_t revision_ = 0;
    std::string identifier_;
    std::string title_;
    std::string startTime_;
    std::string endTime_;
    std::optional<std::string> alertToneIdentifier_;
    std::vector<std::string> wifiNetworks_;
    std::vector<std::string> calendarIdentifiers_;
    std::shared_ptr<ChangedProfiles> changed_;
};

}  // namespace quietrix
