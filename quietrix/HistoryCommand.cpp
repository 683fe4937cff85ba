// SPDX-License-Identifier: MIT
#include <array>
#include <cmath>
#include <cstdio>

#include "device/EscapedText.h"
#include "device/UniversalTime.h"
#include "platform/foundation/Calendar.h"
#include "profile/model/ProfileHistory.h"
#include "quietrix/ChangeReport.h"
#include "quietrix/Commands.h"
#include "quietrix/Table.h"

namespace console {

namespace {

using quietrix::ProfileHistoryEntry;
using quietrix::ProfilesDifference;

/// More of one kind are counted.
constexpr std::size_t mostNamed = 3;

/// In universal time with milliseconds.
std::string exactTime(platform::Date time) {
    constexpr double referenceInUnixTime = 978307200.0;
    const auto milliseconds = std::llround((time.secondsSinceReference + referenceInUnixTime) * 1000.0);
    std::array<char, 8> fraction{};
    std::snprintf(fraction.data(), fraction.size(), ".%03dZ", static_cast<int>(milliseconds % 1000));
    return device::universalTimeText(static_cast<std::time_t>(milliseconds / 1000), "%Y-%m-%dT%H:%M:%S") +
           fraction.data();
}

/// As the phone's owner reads it, in the phone's time zone.
std::string localTime(platform::Date time) {
    using enum platform::CalendarUnit;
    const auto parts = platform::Calendar::currentCalendar().components_fromDate(
        CalendarUnitYear | CalendarUnitMonth | CalendarUnitDay | CalendarUnitHour | CalendarUnitMinute |
            CalendarUnitSecond,
        time);
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%04d-%02d-%02d %02d:%02d:%02d", static_cast<int>(parts.year),
                  static_cast<int>(parts.month), static_cast<int>(parts.day), static_cast<int>(parts.hour),
                  static_cast<int>(parts.minute), static_cast<int>(parts.second));
    return text.data();
}

std::string inWords(const std::string& word, const std::vector<ProfilesDifference::Profile>& profiles) {
    if (profiles.empty()) return {};
    if (profiles.size() > mostNamed) return word + " " + std::to_string(profiles.size()) + " profiles";
    std::string text;
    for (const ProfilesDifference::Profile& each : profiles) {
        text += (text.empty() ? word + " " : ", ") + device::quotedText(each.title);
        std::string keys;
        for (const ProfilesDifference::Value& value : each.values)
            keys += (keys.empty() ? "" : ", ") + value.key;
        if (!keys.empty()) text += " (" + keys + ")";
    }
    return text;
}

std::string inWords(const ProfileHistoryEntry& entry) {
    std::string text;
    const auto append = [&](const std::string& part) {
        if (!part.empty()) text += (text.empty() ? "" : "; ") + part;
    };
    if (entry.isPresent) append("present");
    if (entry.isAbsence) append("no profiles file");
    if (entry.difference) {
        append(inWords("added", entry.difference->added));
        append(inWords("changed", entry.difference->changed));
        append(inWords("removed", entry.difference->removed));
        if (entry.difference->isEmpty()) append("no profile changed");
    } else if (entry.problem.empty()) {
        append("the states before are no longer kept");
    }
    append(entry.problem);
    return device::visibleText(text);
}

boost::json::object jsonOfEntry(const ProfileHistoryEntry& entry) {
    boost::json::object object{{"number", nullptr},
                               {"time", exactTime(entry.time)},
                               {"present", entry.isPresent},
                               {"file", !entry.isAbsence}};
    if (entry.number) object["number"] = *entry.number;
    // An entry tells of its changes as an import does; nothing of them where they are not known.
    const boost::json::value report = entry.difference ? changeReport(*entry.difference).json() : nullptr;
    for (const char* part : {"added", "changed", "removed", "unchanged"})
        object[part] = report.is_null() ? nullptr : report.at(part);
    object["problem"] = nullptr;
    if (!entry.problem.empty()) object["problem"] = device::escapedText(entry.problem);
    return object;
}

Outcome history(Session& session) {
    const auto entries = quietrix::ProfileHistory::entries();
    if (!entries) return refusal(Status::Failed, entries.error().localizedDescription);
    boost::json::array list;
    std::vector<std::vector<std::string>> rows{{"NUMBER", "TIME", "STATE"}};
    for (const ProfileHistoryEntry& entry : *entries) {
        list.push_back(jsonOfEntry(entry));
        rows.push_back(
            {entry.number ? std::to_string(*entry.number) : "-", localTime(entry.time), inWords(entry)});
    }
    Answer answer{.text = "", .json = std::move(list)};
    if (entries->empty()) {
        answer.note = "There have been no profiles yet.";
        return answer;
    }
    answer.text = table(rows, [&](std::size_t line, std::size_t, const std::string& text) {
        return line == 0 ? session.output().coloured(Output::Colour::Dim, text) : text;
    });
    return answer;
}

}  // namespace

void addHistory(Commands& commands) {
    commands.add("history", "Lists the states that the profiles had: the present one first").run(history);
}

}  // namespace console
