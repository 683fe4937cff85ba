// SPDX-License-Identifier: MIT
#include "profile/model/ProfilesFile.h"

#include <algorithm>
#include <functional>
#include <set>
#include <utility>

#include "platform/foundation/LargeXMLList.h"
#include "platform/foundation/PropertyList.h"

namespace quietrix {

namespace {

using platform::BinaryList;
using platform::Data;
using platform::Dictionary;
using platform::failure;
using platform::PropertyListFormat;
using platform::PropertyListSerialization;
using platform::Result;
using platform::Value;

constexpr std::string_view identifierKey = "identifier";

Result<BinaryList> binaryList(Data bytes) {
    const auto format = PropertyListSerialization::formatOfData(bytes);
    if (!format) return std::unexpected(format.error());
    if (*format == PropertyListFormat::Binary) return BinaryList::create(std::move(bytes));
    if (bytes.size() > ProfilesFile::largeSize) {
        auto converted = platform::LargeXMLList::toBinary(bytes);
        bytes = Data();
        if (!converted) return std::unexpected(converted.error());
        return BinaryList::create(*std::move(converted));
    }
    const auto root = PropertyListSerialization::propertyListWithData(bytes);
    if (!root) return std::unexpected(root.error());
    auto binary = PropertyListSerialization::dataWithPropertyList(*root, PropertyListFormat::Binary);
    if (!binary) return std::unexpected(binary.error());
    return BinaryList::create(*std::move(binary));
}

}  // namespace

Result<ProfilesFile> ProfilesFile::parse(platform::Data bytes) {
    auto list = binaryList(std::move(bytes));
    if (!list) return std::unexpected(list.error());
    ProfilesFile file;
    file.list_ = *std::move(list);
    file.liveBytes_ = file.list_->reachableBytes();
    if (auto read = file.readEntries(); !read) return std::unexpected(read.error());
    return file;
}

Result<void> ProfilesFile::readEntries() {
    const BinaryList::Object root = list_->root();
    if (!list_->isDictionary(root)) return failure("Its root is no dictionary.");
    const auto format = list_->find(root, formatKey);
    if (!format) return failure("It has no \"format\".");
    // Only of a number it is known that it is short.
    if (!list_->isNumber(*format)) return failure("Its \"format\" is no number.");
    const Value version = list_->value(*format);
    if (version != Value(currentFormat)) {
        return failure("Its \"format\" is " + version.description() + ", and only " +
                       std::to_string(currentFormat) +
                       " is known: use the version of the program that wrote it.");
    }
    const auto profiles = list_->find(root, profilesKey);
    if (!profiles || !list_->isArray(*profiles)) return failure("It has no array \"profiles\".");
    // Beside the bytes stand four for each entry now, and up to that again for each that is a profile.
    const std::size_t count = list_->elementCount(*profiles);
    const std::size_t size = list_->bytes().size();
    if (size > largeSize && count > size / (2 * sizeof(Entry)))
        return failure("Its array \"profiles\" names the same few objects too often.");
    admit(readCandidates(*profiles));
    return {};
}

std::vector<ProfilesFile::Candidate> ProfilesFile::readCandidates(BinaryList::Object profiles) {
    const std::size_t count = list_->elementCount(profiles);
    entries_.reserve(count);
    // An object that comes again has the identifier of its first entry, and is none of its own.
    std::vector<bool> isNew(list_->count());
    std::size_t dictionaries = 0;
    for (std::size_t position = 0; position < count; ++position) {
        const BinaryList::Object object = list_->element(profiles, position);
        entries_.emplace_back(object, false);
        if (isNew[object] || list_->pairCount(object) == 0) continue;
        isNew[object] = true;
        ++dictionaries;
    }
    std::vector<Candidate> candidates;
    candidates.reserve(dictionaries);
    for (std::size_t position = 0; position < count; ++position) {
        const BinaryList::Object object = entries_[position].object();
        if (!isNew[object]) continue;
        isNew[object] = false;
        const auto name = list_->find(object, identifierKey);
        if (name && list_->isString(*name) && !list_->textIs(*name, ""))
            candidates.push_back({{0, object}, *name, static_cast<std::uint32_t>(position)});
    }
    return candidates;
}

void ProfilesFile::admit(std::vector<Candidate> candidates) {
    // Each text is looked at once, however many entries share it: only the first of them can be a profile.
    const auto byName = [](const Candidate& candidate) {
        return std::pair(candidate.name, candidate.position);
    };
    std::ranges::sort(candidates, {}, byName);
    const auto again = std::ranges::unique(candidates, {}, &Candidate::name);
    candidates.erase(again.begin(), again.end());
    for (Candidate& candidate : candidates) candidate.place.hash = hashOf(*list_->string(candidate.name));

    const auto hash = [](const Candidate& candidate) { return candidate.place.hash; };
    std::ranges::sort(candidates, {},
                      [&](const Candidate& each) { return std::pair(hash(each), each.position); });
    places_.reserve(candidates.size());
    for (auto first = candidates.begin(); first != candidates.end();) {
        const auto end = std::find_if(first, candidates.end(),
                                      [&](const Candidate& each) { return hash(each) != hash(*first); });
        admitFirstOfEachName({first, end});
        first = end;
    }
    foreignEntries_ = entries_.size() - places_.size();
}

void ProfilesFile::admitFirstOfEachName(std::span<const Candidate> ofOneHash) {
    std::set<std::string> taken;
    for (const Candidate& candidate : ofOneHash) {
        const bool isAlone = ofOneHash.size() == 1;
        if (!isAlone && !taken.insert(*list_->string(candidate.name)).second) continue;
        places_.push_back(candidate.place);
        entries_[candidate.position] = Entry(candidate.place.object, true);
    }
}

std::uint32_t ProfilesFile::hashOf(std::string_view identifier) {
    return static_cast<std::uint32_t>(std::hash<std::string_view>()(identifier));
}

const platform::Data& ProfilesFile::bytes() const {
    static const platform::Data none;
    return list_ ? list_->bytes() : none;
}

std::vector<ProfilesFile::Profile> ProfilesFile::profiles() const {
    std::vector<Profile> result;
    result.reserve(places_.size());
    for (const Entry& entry : entries_) {
        if (entry.isProfile()) result.push_back(entry.object());
    }
    return result;
}

std::optional<ProfilesFile::Profile> ProfilesFile::find(std::string_view identifier) const {
    const auto found = std::ranges::equal_range(places_, hashOf(identifier), {}, &Place::hash);
    for (const Place& place : found) {
        const auto name = list_->find(place.object, identifierKey);
        if (name && list_->textIs(*name, identifier)) return place.object;
    }
    return std::nullopt;
}

std::string ProfilesFile::identifier(Profile profile) const {
    const auto object = list_->find(profile, identifierKey);
    return object ? list_->string(*object).value_or("") : "";
}

Dictionary ProfilesFile::values(Profile profile) const {
    return *list_->value(profile).dictionary();
}

}  // namespace quietrix
