// SPDX-License-Identifier: MIT
#include "quietrix/ProfileText.h"

#include "profile/model/EventStatus.h"
#include "profile/model/QXProfileKeys.h"
#include "quietrix/JSONText.h"

namespace console {

using quietrix::QXProfile;

namespace {

std::string quoted(const std::string& text) {
    return '"' + text + '"';
}

}  // namespace

boost::json::object jsonOfProfile(const QXProfile& profile) {
    boost::json::object object;
    for (const quietrix::QXProfileKey& key : quietrix::profileKeys()) {
        if (key.isStored())
            object[boost::json::string_view(key.name.data(), key.name.size())] = jsonOf(key.get(profile));
    }
    return object;
}

boost::json::array jsonOfProfiles(const std::vector<Record>& profiles) {
    boost::json::array array;
    for (const Record& profile : profiles) array.push_back(jsonOfProfile(*profile));
    return array;
}

std::string hoursText(const QXProfile& profile) {
    return profile.isAllDay() ? "All Day" : profile.startTime() + " - " + profile.endTime();
}

std::string conditionsText(const QXProfile& profile) {
    std::string text;
    const auto append = [&](const std::string& part) { text += (text.empty() ? "" : ", ") + part; };
    const auto counted = [](std::size_t count, const std::string& one) {
        return std::to_string(count) + " " + one + (count == 1 ? "" : "s");
    };
    const auto& calendars = profile.calendarIdentifiers();
    append(calendars.empty() ? "all calendars" : counted(calendars.size(), "calendar"));
    const auto status = quietrix::eventStatusName(profile.applyProfileEventStatus());
    if (!status) {
        append("event status " + std::to_string(profile.applyProfileEventStatus()));
    } else if (profile.applyProfileEventStatus() != 0) {
        append(std::string(*status));
    }
    if (!profile.wifiNetworks().empty()) append(counted(profile.wifiNetworks().size(), "network"));
    return text;
}

std::string valueInWords(std::string_view key, const platform::Value& value) {
    if (value.isNil()) return "none";
    if (const auto boolean = value.boolean()) return *boolean ? "yes" : "no";
    if (key == "applyProfileEventStatus" && value.integer()) {
        const auto name = quietrix::eventStatusName(*value.integer());
        return value.description() + (name ? " (" + std::string(*name) + ")" : "");
    }
    if (const platform::Array* list = value.array()) {
        std::string text;
        for (const platform::Value& element : *list)
            text += (text.empty() ? "" : ", ") + quoted(element.description());
        if (text.empty()) return key == "calendarIdentifiers" ? "all" : "none";
        return text;
    }
    return value.description();
}

std::vector<std::pair<std::string, std::string>> valuesInWords(const QXProfile& profile) {
    std::vector<std::pair<std::string, std::string>> values;
    for (const quietrix::QXProfileKey& key : quietrix::profileKeys()) {
        if (key.isStored()) values.emplace_back(key.name, valueInWords(key.name, key.get(profile)));
    }
    return values;
}

}  // namespace console
