// SPDX-License-Identifier: MIT
#include "profile/model/QXProfileKeys.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "profile/model/QXProfile.h"

namespace quietrix {

namespace {

using platform::Value;

using TextList = std::vector<std::string>;

template <class T>
Value box(const T& value) {
    if constexpr (std::is_same_v<T, TextList>) {
        return platform::Array(value.begin(), value.end());
    } else if constexpr (std::is_same_v<T, std::optional<std::string>> ||
                         std::is_same_v<T, std::optional<platform::Date>>) {
        return value ? Value(*value) : Value();
    } else {
        return Value(value);
    }
}

/// The value as a T, or empty when it is of a type that such a key does not take.
template <class T>
std::optional<T> unbox(const Value& value);

template <>
std::optional<std::string> unbox(const Value& value) {
    return value.string() ? std::optional(*value.string()) : std::nullopt;
}

template <>
std::optional<std::optional<std::string>> unbox(const Value& value) {
    if (value.isNil()) return std::optional<std::string>();
    if (value.string()) return std::optional<std::string>(*value.string());
    return std::nullopt;
}

template <>
std::optional<bool> unbox(const Value& value) {
    if (value.boolean()) return value.boolean();
    const auto integer = value.integer();
    return integer == 0 || integer == 1 ? std::optional(integer == 1) : std::nullopt;
}

template <>
std::optional<double> unbox(const Value& value) {
    const auto number = value.boolean() ? std::nullopt : value.number();
    return number && !std::isnan(*number) ? number : std::nullopt;
}

template <>
std::optional<std::int64_t> unbox(const Value& value) {
    return value.integer();
}

template <>
std::optional<TextList> unbox(const Value& value) {
    if (!value.array()) return std::nullopt;
    TextList texts;
    texts.reserve(value.array()->size());
    for (const Value& element : *value.array()) {
        if (!element.string()) return std::nullopt;
        texts.push_back(*element.string());
    }
    return texts;
}

template <class T>
constexpr KeyType typeOf() {
    if constexpr (std::is_same_v<T, std::string>) return KeyType::Text;
    if constexpr (std::is_same_v<T, std::optional<std::string>>) return KeyType::OptionalText;
    if constexpr (std::is_same_v<T, bool>) return KeyType::Boolean;
    if constexpr (std::is_same_v<T, double>) return KeyType::Real;
    if constexpr (std::is_same_v<T, std::int64_t>) return KeyType::Integer;
    if constexpr (std::is_same_v<T, TextList>) return KeyType::TextList;
    if constexpr (std::is_same_v<T, std::optional<platform::Date>>) return KeyType::Date;
}

template <auto getter>
using Result = std::remove_cvref_t<std::invoke_result_t<decltype(getter), const QXProfile&>>;

template <auto getter>
Value getBoxed(const QXProfile& profile) {
    return box<Result<getter>>((profile.*getter)());
}

template <auto getter, auto setter>
bool setBoxed(QXProfile& profile, const Value& value) {
    auto unboxed = unbox<Result<getter>>(value);
    if (!unboxed) return false;
    (profile.*setter)(*std::move(unboxed));
    return true;
}

template <auto getter, auto setter>
constexpr QXProfileKey stored(std::string_view name, QXProfileKey::Default defaultValue = {}) {
    return {name,
            typeOf<Result<getter>>(),
            KeyStorage::Stored,
            defaultValue,
            &getBoxed<getter>,
            &setBoxed<getter, setter>,
            &keyIdentity<setter>};
}

template <auto getter, auto setter>
constexpr QXProfileKey inMemory(std::string_view name, QXProfileKey::Default defaultValue) {
    return {name,
            typeOf<Result<getter>>(),
            KeyStorage::InMemory,
            defaultValue,
            &getBoxed<getter>,
            &setBoxed<getter, setter>,
            &keyIdentity<setter>};
}

template <auto getter>
constexpr QXProfileKey derived(std::string_view name) {
    return {name, typeOf<Result<getter>>(), KeyStorage::Derived, {}, &getBoxed<getter>, nullptr, nullptr};
}

using P = QXProfile;
using namespace std::string_view_literals;

// The tone has no default: nil means no tone, and that is what a key missing from the file has to mean too.
// The user picks one when the alert is to be heard.
constexpr std::array keys{
    stored<&P::identifier, &P::setIdentifier>("identifier", ""sv),
    stored<&P::title, &P::setTitle>("title", "New Profile"sv),
    stored<&P::isEnabled, &P::setEnabled>("enabled", true),
    stored<&P::isAllDay, &P::setAllDay>("allDay", true),
    stored<&P::startTime, &P::setStartTime>("startTime", "9:00 AM"sv),
    stored<&P::endTime, &P::setEndTime>("endTime", "5:00 PM"sv),
    derived<&P::startDate>("startDate"),
    derived<&P::endDate>("endDate"),
    stored<&P::playBackVolume, &P::setPlayBackVolume>("playBackVolume", 0.0),
    stored<&P::ringerVolume, &P::setRingerVolume>("ringerVolume", 0.0),
    stored<&P::vibrate, &P::setVibrate>("vibrate", true),
    stored<&P::isPlayAlert, &P::setPlayAlert>("playAlert", true),
    stored<&P::alertToneIdentifier, &P::setAlertToneIdentifier>("alertToneIdentifier"),
    stored<&P::vibrateAlert, &P::setVibrateAlert>("vibrateAlert", true),
    stored<&P::wakeUpScreen, &P::setWakeUpScreen>("wakeUpScreen", true),
    stored<&P::dnDEnabled, &P::setDnDEnabled>("dnDEnabled", false),
    stored<&P::showOnStatusBar, &P::setShowOnStatusBar>("showOnStatusBar", false),
    stored<&P::wifiNetworks, &P::setWifiNetworks>("wifiNetworks"),
    stored<&P::calendarIdentifiers, &P::setCalendarIdentifiers>("calendarIdentifiers"),
    stored<&P::allDayEventsIgnored, &P::setAllDayEventsIgnored>("allDayEventsIgnored", true),
    stored<&P::applyProfileEventStatus, &P::setApplyProfileEventStatus>("applyProfileEventStatus",
                                                                        std::int64_t{0}),
    derived<&P::applyProfileEventStatusString>("applyProfileEventStatusString"),
    inMemory<&P::isNewProfile, &P::setNewProfile>("newProfile", false),
};

}  // namespace

std::span<const QXProfileKey> profileKeys() {
    return keys;
}

const QXProfileKey* profileKey(std::string_view name) {
    const auto found = std::ranges::find(keys, name, &QXProfileKey::name);
    return found == keys.end() ? nullptr : &*found;
}

Value QXProfileKey::defaultAsValue() const {
    if (type == KeyType::TextList) return platform::Array();
    return std::visit(
        []<class T>(const T& value) {
            if constexpr (std::is_same_v<T, std::monostate>) {
                return Value();
            } else {
                return Value(value);
            }
        },
        defaultValue);
}

std::string_view nameOfType(KeyType type) {
    static constexpr std::array names{"a string"sv,   "a string or nil"sv,     "a boolean"sv, "a number"sv,
                                      "an integer"sv, "an array of strings"sv, "a date"sv};
    return names.at(static_cast<std::size_t>(type));
}

std::string_view nameOfType(Value::Type type) {
    static constexpr std::array names{"nil"sv,          "a boolean"sv, "an integer"sv, "a real"sv,
                                      "a string"sv,     "a date"sv,    "data"sv,       "an array"sv,
                                      "a dictionary"sv, "an object"sv};
    return names.at(static_cast<std::size_t>(type));
}

}  // namespace quietrix
