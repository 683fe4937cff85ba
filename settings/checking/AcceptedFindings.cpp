// SPDX-License-Identifier: MIT
#include "settings/checking/AcceptedFindings.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

#include "platform/foundation/PropertyList.h"
#include "settings/channels/JSON.h"

namespace settings {

using platform::failure;
using platform::Result;
using platform::Value;

namespace {

constexpr std::array members{
    std::pair{"kind", &AcceptedFinding::kind}, std::pair{"screen", &AcceptedFinding::screen},
    std::pair{"row", &AcceptedFinding::row}, std::pair{"subject", &AcceptedFinding::subject},
    std::pair{"reason", &AcceptedFinding::reason}};

bool isKind(std::string_view name) {
    for (int kind = 0; kind <= static_cast<int>(FindingKind::SlowCommand); ++kind) {
        if (nameOfKind(static_cast<FindingKind>(kind)) == name) return true;
    }
    return false;
}

Result<AcceptedFinding> acceptedFrom(const Value& entry, const std::string& where) {
    if (!entry.dictionary()) return failure(where + " is no dictionary.");
    AcceptedFinding accepted;
    for (const auto& [key, value] : *entry.dictionary()) {
        const auto member =
            std::ranges::find(members, key, &std::pair<const char*, std::string AcceptedFinding::*>::first);
        if (member == members.end()) return failure(where + " has the unknown key \"" + key + "\".");
        if (!value.string()) return failure(where + " has no text under \"" + key + "\".");
        accepted.*(member->second) = *value.string();
    }
    if (!isKind(accepted.kind)) return failure(where + " has the unknown kind \"" + accepted.kind + "\".");
    if (accepted.reason.empty()) return failure(where + " has no reason.");
    return accepted;
}

Result<std::vector<AcceptedFinding>> fromLines(std::string_view text) {
    std::vector<AcceptedFinding> all;
    for (int number = 1; !text.empty(); ++number) {
        const std::size_t end = text.find('\n');
        const std::string_view line = text.substr(0, end);
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        if (line.find_first_not_of(" \t\r") == std::string_view::npos) continue;
        const std::string where = "Line " + std::to_string(number);
        const auto value = parseJSON(line);
        if (!value) return failure(where + " is no JSON: " + value.error().localizedDescription);
        auto accepted = acceptedFrom(*value, where);
        if (!accepted) return std::unexpected(accepted.error());
        all.push_back(*std::move(accepted));
    }
    return all;
}

}  // namespace

bool AcceptedFinding::accepts(const Finding& finding) const {
    const auto fits = [](const std::string& wanted, std::string_view found) {
        return wanted.empty() || wanted == found;
    };
    return kind == nameOfKind(finding.kind) && fits(screen, finding.screen) && fits(row, finding.row) &&
           fits(subject, finding.subject);
}

Result<std::vector<AcceptedFinding>> parseAcceptedFindings(const platform::Data& data) {
    const std::string_view text(reinterpret_cast<const char*>(data.data()), data.size());
    const std::size_t first = text.find_first_not_of(" \t\r\n");
    if (first == std::string_view::npos || text[first] == '{') return fromLines(text);
    const auto list = platform::PropertyListSerialization::propertyListWithData(data);
    if (!list) return std::unexpected(list.error());
    if (!list->array()) return failure("The root of the property list is no array.");
    std::vector<AcceptedFinding> all;
    for (const Value& entry : *list->array()) {
        auto accepted = acceptedFrom(entry, "Entry " + std::to_string(all.size() + 1));
        if (!accepted) return std::unexpected(accepted.error());
        all.push_back(*std::move(accepted));
    }
    return all;
}

SortedFindings sortFindings(const std::vector<Finding>& findings,
                            const std::vector<AcceptedFinding>& accepted) {
    SortedFindings sorted;
    std::vector<bool> isUsed(accepted.size());
    for (const Finding& finding : findings) {
        const std::string* reason = nullptr;
        for (std::size_t i = 0; i < accepted.size(); ++i) {
            if (!accepted[i].accepts(finding)) continue;
            isUsed[i] = true;
            if (!reason) reason = &accepted[i].reason;
        }
        if (reason) {
            sorted.accepted.emplace_back(finding, *reason);
        } else {
            sorted.open.push_back(finding);
        }
    }
    for (std::size_t i = 0; i < accepted.size(); ++i) {
        if (!isUsed[i]) sorted.unused.push_back(accepted[i]);
    }
    return sorted;
}

}  // namespace settings
