// SPDX-License-Identifier: MIT
#include "profile/model/QXProfile.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>

#include "platform/foundation/Hexadecimal.h"
#include "platform/foundation/LogSink.h"
#include "platform/foundation/RandomSource.h"
#include "profile/model/ChangedProfiles.h"
#include "profile/model/EventStatus.h"
#include "profile/model/QXProfileKeys.h"
#include "profile/model/QXUtils.h"
#include "shell/base/Localization.h"

namespace quietrix {

PLATFORM_REGISTER_CLASS(QXProfile)

namespace {

std::string quoted(std::string_view text) {
    return '"' + std::string(text) + '"';
}

platform::Array stringsOf(const platform::Array& list) {
    platform::Array strings;
    std::ranges::copy_if(list, std::back_inserter(strings),
                         [](const platform::Value& element) { return element.string() != nullptr; });
    return strings;
}

/// A random UUID in capitals, as the phone writes its identifiers.
std::string freshIdentifier() {
    std::array<std::uint8_t, 16> bytes{};
    platform::fillWithRandomBytes(bytes);
    bytes[6] = static_cast<std::uint8_t>((bytes[6] & 0x0F) | 0x40);  // version 4: random
    bytes[8] = static_cast<std::uint8_t>((bytes[8] & 0x3F) | 0x80);  // the usual variant
    std::string text;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (i == 4 || i == 6 || i == 8 || i == 10) text += '-';
        platform::appendHexadecimal(text, bytes[i], platform::capitalHexadecimalDigits);
    }
    return text;
}

}  // namespace

QXProfile::QXProfile() {
    for (const QXProfileKey& key : profileKeys()) {
        if (key.set) key.set(*this, key.defaultAsValue());
    }
    remembersSettings_ = true;
}

std::shared_ptr<QXProfile> QXProfile::defaultProfile() {
    auto profile = std::make_shared<QXProfile>();
    profile->identifier_ = freshIdentifier();
    profile->title_ = localized(profile->title_);
    return profile;
}

std::shared_ptr<QXProfile> QXProfile::profileWithValues(const platform::Dictionary& values,
                                                        const Report& report) {
    auto profile = std::make_shared<QXProfile>();
    profile->remembersSettings_ = false;
    for (const QXProfileKey& key : profileKeys()) {
        const auto value = key.isStored() ? values.find(key.name) : values.end();
        if (value == values.end() || key.set(*profile, value->second)) continue;
        const platform::Array* list = key.type == KeyType::TextList ? value->second.array() : nullptr;
        std::string line =
            "The profile " + quoted(profile->identifier_) + " holds " +
            (list ? "elements that are no strings" : std::string(nameOfType(value->second.type()))) +
            " under " + quoted(key.name) + ", which takes " + std::string(nameOfType(key.type));
        if (list) {
            key.set(*profile, stringsOf(*list));
            line += "; they are passed over, and stay in the file.";
        } else {
            line += "; its default is used, and the file keeps what it holds until the key is changed.";
        }
        report(line);
    }
    profile->remembersSettings_ = true;
    return profile;
}

platform::Dictionary QXProfile::storedValues() const {
    platform::Dictionary values;
    for (const QXProfileKey& key : profileKeys()) {
        if (!key.isStored()) continue;
        if (auto value = key.get(*this)) values.emplace(key.name, std::move(value));
    }
    return values;
}

ProfileEdit QXProfile::edit() const {
    ProfileEdit edit{.values = storedValues(), .set = {}, .settings = settings_};
    for (const QXProfileKey& key : profileKeys()) {
        const auto setting = key.isStored() ? set_.find(key.identity()) : set_.end();
        if (setting != set_.end()) edit.set.emplace(key.name, setting->second.base);
    }
    return edit;
}

void QXProfile::wasStored(const ProfileEdit& edit) {
    std::erase_if(set_, [&](const auto& entry) { return entry.second.number <= edit.settings; });
    for (const QXProfileKey& key : profileKeys()) {
        if (!key.isStored() || key.type != KeyType::TextList) continue;
        const auto setting = set_.find(key.identity());
        const auto stored = edit.values.find(key.name);
        if (setting == set_.end() || stored == edit.values.end()) continue;
        setting->second.base.clear();
        for (const platform::Value& element : *stored->second.array())
            setting->second.base.push_back(element.stringOr());
    }
}

platform::Value QXProfile::valueForKey(std::string_view key) const {
    if (const QXProfileKey* known = profileKey(key)) return known->get(*this);
    platform::log("A profile has no key " + quoted(key) + ".");
    return {};
}

void QXProfile::setValue_forKey(const platform::Value& value, std::string_view key) {
    const QXProfileKey* known = profileKey(key);
    if (known && known->set && known->set(*this, value)) return;
    const std::string offered(nameOfType(value.type()));
    if (!known) {
        platform::log("A profile has no key " + quoted(key) + "; " + offered + " was not stored.");
    } else if (!known->set) {
        platform::log("The key " + quoted(key) + " of a profile is read-only; " + offered +
                      " was not stored.");
    } else {
        platform::log("The key " + quoted(key) + " of a profile takes " +
                      std::string(nameOfType(known->type)) + "; " + offered + " (" + value.description() +
                      ") was not stored.");
    }
}

std::optional<platform::Date> QXProfile::dateOfTime(const std::string& time) {
    platform::DateFormatter& formatter = QXUtils::dateFormatter();
    formatter.setDateFormat("h:mm a");
    return formatter.dateFromString(time);
}

std::optional<platform::Date> QXProfile::startDate() const {
    return dateOfTime(startTime_);
}

std::optional<platform::Date> QXProfile::endDate() const {
    return dateOfTime(endTime_);
}

void QXProfile::setPlayBackVolume(double volume) {
    if (!std::isnan(volume)) assign<&QXProfile::setPlayBackVolume>(playBackVolume_, volume);
}

void QXProfile::setRingerVolume(double volume) {
    if (!std::isnan(volume)) assign<&QXProfile::setRingerVolume>(ringerVolume_, volume);
}

bool QXProfile::hasWiFiNetwork(std::string_view ssid) const {
    return std::ranges::find(wifiNetworks_, ssid) != wifiNetworks_.end();
}

void QXProfile::addToWiFiNetwork(std::string_view ssid) {
    if (hasWiFiNetwork(ssid)) return;
    willSet<&QXProfile::setWifiNetworks>(wifiNetworks_);
    wifiNetworks_.emplace_back(ssid);
}

void QXProfile::removeFromWiFiNetwork(std::string_view ssid) {
    if (!hasWiFiNetwork(ssid)) return;
    willSet<&QXProfile::setWifiNetworks>(wifiNetworks_);
    std::erase(wifiNetworks_, ssid);
}

std::vector<std::string>& QXProfile::mutableCalendarIdentifiers() {
    willSet<&QXProfile::setCalendarIdentifiers>(calendarIdentifiers_);
    return calendarIdentifiers_;
}

std::string QXProfile::applyProfileEventStatusString() const {
    const auto name = eventStatusName(applyProfileEventStatus_);
    return name ? localized(*name) : std::string();
}

void QXProfile::willSet(KeyIdentity key, const TextList& present) {
    if (!remembersSettings_) return;
    if (settings_++ == 0 && changed_) changed_->add({identifier_, weak_from_this()});
    const auto [setting, isFirst] = set_.try_emplace(key);
    setting->second.number = settings_;
    if (isFirst) setting->second.base = present;
}

}  // namespace quietrix
