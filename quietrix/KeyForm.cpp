// SPDX-License-Identifier: MIT
#include "quietrix/KeyForm.h"

#include <algorithm>
#include <array>
#include <set>
#include <vector>

#include "device/EscapedText.h"
#include "platform/foundation/CaseInsensitive.h"
#include "platform/foundation/DateFormatter.h"
#include "platform/foundation/Unicode.h"
#include "profile/model/EventStatus.h"

namespace console {

using platform::Result;
using platform::Value;
using Kind = KeyForm::Kind;

namespace {

constexpr std::array forms{
    KeyForm{"identifier", Kind::Identifier, "What the profile is known by; given once and never changed"},
    KeyForm{"title", Kind::Text, "The profile's name"},
    KeyForm{"enabled", Kind::Boolean, "The profile takes part in silencing"},
    KeyForm{"allDay", Kind::Boolean, "It applies all day, not just within its active hours"},
    KeyForm{"startTime", Kind::Time, "When the active hours begin"},
    KeyForm{"endTime", Kind::Time, "When the active hours end"},
    KeyForm{"playBackVolume", Kind::Volume, "The volume of media while it applies"},
    KeyForm{"ringerVolume", Kind::Volume, "The volume of the ringer while it applies"},
    KeyForm{"vibrate", Kind::Boolean, "The phone vibrates while it applies"},
    KeyForm{"playAlert", Kind::Boolean, "An alert is played before and after it is applied to an event"},
    KeyForm{"alertToneIdentifier", Kind::Tone, "The tone of that alert"},
    KeyForm{"vibrateAlert", Kind::Boolean, "The phone vibrates with the alert"},
    KeyForm{"wakeUpScreen", Kind::Boolean, "The alert wakes the screen"},
    KeyForm{"dnDEnabled", Kind::Boolean, "Do Not Disturb is on while it applies"},
    KeyForm{"showOnStatusBar", Kind::Boolean, "The status bar has an icon while it applies"},
    KeyForm{"wifiNetworks", Kind::List, "The networks on which it applies, by their names"},
    KeyForm{"calendarIdentifiers", Kind::List, "The calendars for whose events it applies; none for all"},
    KeyForm{"allDayEventsIgnored", Kind::Boolean, "Events that last all day do not count"},
    KeyForm{"applyProfileEventStatus", Kind::EventStatus, "The events that count, by the answer to them"},
};

std::unexpected<platform::Error> wrong(const KeyForm& form, const Value& offered) {
    return platform::failure(std::string(form.key) + " takes " + std::string(rangeOf(form.kind)) + ", not " +
                             (offered.string() ? device::quotedText(*offered.string())
                                               : device::escapedText(offered.description())) +
                             ".");
}

bool isText(const Value& value) {
    return value.string() && !platform::firstInvalidUTF8(*value.string());
}

std::optional<Value> acceptedBoolean(const Value& offered) {
    if (offered.boolean()) return offered;
    const auto integer = offered.integer();
    if (integer == 0 || integer == 1) return Value(integer == 1);
    return std::nullopt;
}

std::optional<Value> acceptedTime(const Value& offered) {
    const auto time = offered.string() ? storedTime(*offered.string()) : std::nullopt;
    return time ? std::optional(Value(*time)) : std::nullopt;
}

std::optional<Value> acceptedVolume(const Value& offered) {
    const auto number = offered.boolean() ? std::nullopt : offered.number();
    // A zero of its own sign is the same volume.
    return number && *number >= 0.0 && *number <= 1.0 ? std::optional(Value(*number + 0.0)) : std::nullopt;
}

std::optional<Value> acceptedTone(const Value& offered) {
    if (offered.isNil()) return offered;
    if (!isText(offered)) return std::nullopt;
    const std::size_t colon = offered.string()->find(':');
    const bool hasBoth = colon != std::string::npos && colon > 0 && colon + 1 < offered.string()->size();
    return hasBoth ? std::optional(offered) : std::nullopt;
}

std::optional<Value> acceptedList(const Value& offered) {
    if (!offered.array() || !std::ranges::all_of(*offered.array(), isText)) return std::nullopt;
    platform::Array list;
    std::set<std::string_view> taken;
    for (const Value& element : *offered.array())
        if (taken.insert(*element.string()).second) list.push_back(element);
    return Value(std::move(list));
}

std::optional<Value> acceptedEventStatus(const Value& offered) {
    if (const auto status = offered.integer())
        return quietrix::eventStatusName(*status) ? std::optional(offered) : std::nullopt;
    if (!offered.string()) return std::nullopt;
    const auto& names = quietrix::eventStatusNames;
    const auto named = std::ranges::find_if(
        names, [&](std::string_view name) { return platform::equalIgnoringCase(name, *offered.string()); });
    return named == names.end() ? std::nullopt : std::optional(Value(named - names.begin()));
}

}  // namespace

const KeyForm* keyForm(std::string_view key) {
    const auto found = std::ranges::find(forms, key, &KeyForm::key);
    return found == forms.end() ? nullptr : &*found;
}

std::string_view typeOf(Kind kind) {
    switch (kind) {
        case Kind::Identifier:
        case Kind::Text:
            return "text";
        case Kind::Boolean:
            return "boolean";
        case Kind::Time:
            return "time of day";
        case Kind::Volume:
            return "number";
        case Kind::Tone:
            return "text or none";
        case Kind::List:
            return "list of texts";
        case Kind::EventStatus:
            return "integer";
    }
    return "";
}

std::string_view rangeOf(Kind kind) {
    switch (kind) {
        case Kind::Identifier:
        case Kind::Text:
            return "any text in UTF-8";
        case Kind::Boolean:
            return "true or false, yes or no, on or off";
        case Kind::Time:
            return "a time of day like \"9:00 AM\", \"9:00\" or \"21:30\"";
        case Kind::Volume:
            return "a number from 0 to 1";
        case Kind::Tone:
            return "a tone like \"texttone:Calendar Alert\", or none";
        case Kind::List:
            return "texts with commas between them, or a JSON array of texts";
        case Kind::EventStatus:
            return "0 (All), 1 (Accepted), 2 (Tentative) or 3 (Declined/Cancelled)";
    }
    return "";
}

Result<Value> acceptedValue(const KeyForm& form, const Value& offered) {
    std::optional<Value> accepted;
    switch (form.kind) {
        case Kind::Identifier:
        case Kind::Text:
            if (isText(offered)) accepted = offered;
            break;
        case Kind::Boolean:
            accepted = acceptedBoolean(offered);
            break;
        case Kind::Time:
            accepted = acceptedTime(offered);
            break;
        case Kind::Volume:
            accepted = acceptedVolume(offered);
            break;
        case Kind::Tone:
            accepted = acceptedTone(offered);
            break;
        case Kind::List:
            accepted = acceptedList(offered);
            break;
        case Kind::EventStatus:
            accepted = acceptedEventStatus(offered);
            break;
    }
    if (!accepted) return wrong(form, offered);
    return *std::move(accepted);
}

std::optional<std::string> storedTime(std::string_view text) {
    platform::DateFormatter phone;
    phone.setDateFormat("h:mm a");
    auto time = phone.dateFromString(text);
    if (!time) {
        platform::DateFormatter wholeDay;
        wholeDay.setDateFormat("H:mm");
        time = wholeDay.dateFromString(text);
    }
    return time ? std::optional(phone.stringFromDate(*time)) : std::nullopt;
}

}  // namespace console
