// SPDX-License-Identifier: MIT
#include "quietrix/ChangeReport.h"

#include <boost/json/array.hpp>
#include <boost/json/object.hpp>

#include "device/EscapedText.h"

namespace console {

namespace {

boost::json::object jsonOfName(const ChangeReport::Named& named) {
    return {{"identifier", device::escapedText(named.identifier)},
            {"title", device::escapedText(named.title)}};
}

boost::json::array jsonOfNames(const std::vector<ChangeReport::Named>& list) {
    boost::json::array array;
    for (const auto& each : list) array.push_back(jsonOfName(each));
    return array;
}

std::string line(const std::string& word, const ChangeReport::Named& named, const std::string& more) {
    return word + " " +
           device::visibleText("\"" + named.title + "\" (" + named.identifier + ")" +
                               (more.empty() ? "" : ": ")) +
           more + "\n";
}

}  // namespace

ChangeReport::Named ChangeReport::named(const quietrix::QXProfile& profile) {
    return {profile.identifier(), profile.title()};
}

boost::json::value ChangeReport::json() const {
    boost::json::array changes;
    for (const Changed& each : changed) {
        boost::json::object object = jsonOfName(each);
        boost::json::array keys;
        for (const ValueChange& change : each.changes) keys.emplace_back(change.key);
        object["keys"] = std::move(keys);
        object["changes"] = jsonOfChanges(each.changes);
        changes.push_back(std::move(object));
    }
    boost::json::array refusals;
    for (const Refused& each : refused) {
        boost::json::object object = jsonOfName(each);
        object["number"] = each.number;
        object["why"] = device::escapedText(each.reason);
        refusals.push_back(std::move(object));
    }
    return boost::json::object{{"added", jsonOfNames(added)},
                               {"changed", std::move(changes)},
                               {"removed", jsonOfNames(removed)},
                               {"unchanged", unchanged},
                               {"refused", std::move(refusals)}};
}

std::string ChangeReport::text() const {
    std::string text;
    for (const Named& each : added) text += line("added", each, "");
    for (const Changed& each : changed) text += line("changed", each, changesInWords(each.changes));
    for (const Named& each : removed) text += line("removed", each, "");
    for (const Refused& each : refused)
        text += line("refused", each,
                     "number " + std::to_string(each.number) + ": " + device::visibleText(each.reason));
    const auto counted = [](std::size_t count, const std::string& word) {
        return std::to_string(count) + " " + word;
    };
    return text + counted(added.size(), "added, ") + counted(changed.size(), "changed, ") +
           counted(removed.size(), "removed, ") + counted(unchanged, "unchanged, ") +
           counted(refused.size(), "refused\n");
}

ChangeReport changeReport(const quietrix::ProfilesDifference& difference) {
    ChangeReport report;
    for (const auto& each : difference.added) report.added.push_back({each.identifier, each.title});
    for (const auto& each : difference.removed) report.removed.push_back({each.identifier, each.title});
    for (const auto& each : difference.changed) {
        ChangeReport::Changed changed{{each.identifier, each.title}, {}};
        for (const auto& value : each.values)
            changed.changes.push_back({value.key, value.before, value.after});
        report.changed.push_back(std::move(changed));
    }
    report.unchanged = difference.unchanged;
    return report;
}

}  // namespace console
