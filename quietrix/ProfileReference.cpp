// SPDX-License-Identifier: MIT
#include "quietrix/ProfileReference.h"

#include <algorithm>
#include <iterator>
#include <set>

#include "device/EscapedText.h"

namespace console {

namespace {

constexpr std::size_t shortest = 8;
/// More than this is no help in a line.
constexpr std::size_t mostNamed = 5;

std::unexpected<Refusal> unclear(std::string_view text, const std::vector<Record>& candidates) {
    boost::json::array list;
    std::string names;
    const auto identifiers = shortIdentifiers(candidates);
    for (std::size_t i = 0; i < candidates.size(); ++i) {
        list.push_back(boost::json::object{{"identifier", device::escapedText(candidates[i]->identifier())},
                                           {"title", device::escapedText(candidates[i]->title())}});
        if (i >= mostNamed) continue;
        names +=
            (i == 0 ? "" : ", ") + device::quotedText(candidates[i]->title()) + " (" + identifiers[i] + ")";
    }
    if (candidates.size() > mostNamed)
        names += " and " + std::to_string(candidates.size() - mostNamed) + " more";
    Refusal refused{Status::NoSuchProfile,
                    candidates.empty()
                        ? "There is no profile " + device::quotedText(text) + "."
                        : device::quotedText(text) + " names more than one profile: " + names + ".",
                    std::move(list)};
    return std::unexpected(std::move(refused));
}

/// How many bytes two texts have in common at their beginning.
std::size_t commonLength(std::string_view a, std::string_view b) {
    return static_cast<std::size_t>(std::ranges::mismatch(a, b).in1 - a.begin());
}

}  // namespace

std::expected<Record, Refusal> profileNamed(std::string_view text, const std::vector<Record>& present) {
    const auto whole =
        std::ranges::find_if(present, [&](const Record& each) { return each->identifier() == text; });
    if (whole != present.end()) return *whole;
    std::vector<Record> candidates;
    std::ranges::copy_if(present, std::back_inserter(candidates), [&](const Record& each) {
        // Every identifier begins with nothing.
        return each->title() == text || (!text.empty() && each->identifier().starts_with(text));
    });
    if (candidates.size() == 1) return candidates.front();
    return unclear(text, candidates);
}

std::expected<std::vector<Record>, Refusal> profilesNamed(const std::vector<std::string>& texts,
                                                          const std::vector<Record>& present) {
    std::vector<Record> named;
    std::set<Record> taken;
    for (const std::string& text : texts) {
        auto profile = profileNamed(text, present);
        if (!profile) return std::unexpected(std::move(profile.error()));
        if (taken.insert(*profile).second) named.push_back(*std::move(profile));
    }
    return named;
}

std::vector<std::string> shortIdentifiers(const std::vector<Record>& profiles) {
    std::vector<std::string_view> sorted;
    sorted.reserve(profiles.size());
    for (const Record& profile : profiles) sorted.push_back(profile->identifier());
    std::ranges::sort(sorted);
    std::vector<std::string> result;
    for (const Record& profile : profiles) {
        const std::string& identifier = profile->identifier();
        const auto place = std::ranges::lower_bound(sorted, identifier);
        std::size_t length = shortest;
        if (place != sorted.begin())
            length = std::max(length, commonLength(*std::prev(place), identifier) + 1);
        if (std::next(place) != sorted.end())
            length = std::max(length, commonLength(*std::next(place), identifier) + 1);
        length = std::min(length, identifier.size());
        // Not within a character.
        while (length < identifier.size() && (static_cast<unsigned char>(identifier[length]) & 0xC0U) == 0x80)
            ++length;
        result.push_back(identifier.substr(0, length));
    }
    return result;
}

}  // namespace console
