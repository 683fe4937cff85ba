// SPDX-License-Identifier: MIT
#include "settings/checking/Finding.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <tuple>
#include <utility>

namespace settings {

namespace {

constexpr std::array names{
    "missingClass",       "missingSetter",         "missingGetter", "missingAction", "duplicateIdentifier",
    "missingTranslation", "differentPlaceholders", "cutLabel",      "smallTarget",   "missingImage",
    "screenStays",        "observerStays",         "slowCommand"};

static_assert(names.size() == static_cast<std::size_t>(FindingKind::SlowCommand) + 1);

auto identity(const Finding& finding) {
    return std::tie(finding.screen, finding.row, finding.kind, finding.subject);
}

}  // namespace

std::string_view nameOfKind(FindingKind kind) {
    return names[static_cast<std::size_t>(kind)];
}

void Findings::add(Finding finding, const std::string& language) {
    auto place = std::ranges::lower_bound(findings_, identity(finding), {}, identity);
    if (place == findings_.end() || identity(*place) != identity(finding))
        place = findings_.insert(place, std::move(finding));
    if (!language.empty()) place->languages.insert(language);
}

}  // namespace settings
