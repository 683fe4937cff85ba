// SPDX-License-Identifier: MIT
#include "profile/model/ProfilesFile.h"

#include <algorithm>
#include <functional>

#include "platform/foundation/PropertyList.h"
#include "profile/model/ProfilesFileDraft.h"

namespace quietrix {

namespace {

using platform::Dictionary;
using platform::failure;
using platform::PropertyListFormat;
using platform::PropertyListSerialization;
using platform::Result;
using platform::Value;

Result<BinaryList> binaryList(platform::Data bytes) {
    const auto format = PropertyListSerialization::formatOfData(bytes);
    if (!format) return std::unexpected(format.error());
    if (*format == PropertyListFormat::Binary) return BinaryList::create(std::move(bytes));
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
    const Value version = list_->value(*format);
    if (version != Value(currentFormat)) {
        return failure("Its \"format\" is " + version.description() + ", and only " +
                       std::to_string(currentFormat) + " is known.");
    }
    const auto profiles = list_->find(root, profilesKey);
    if (!profiles || !list_->isArray(*profiles)) return failure("It has no array \"profiles\".");
    const auto objects = list_->elements(*profiles);
    entries_.reserve(objects.size());
    std::vector<Candidate> candidates;
    candidates.reserve(objects.size());
    for (const BinaryList::Object object : objects) {
        const std::string name = identifier(object);
        if (!name.empty()) candidates.push_back({{hashOf(name), object}, entries_.size()});
        entries_.push_back({object, false});
    }
    admit(std::move(candidates));
    return {};
}

void ProfilesFile::admit(std::vector<Candidate> candidates) {
    // The first of several under one identifier comes first among them and is the profile.
    std::ranges::sort(candidates, [this](const Candidate& a, const Candidate& b) {
        if (a.place.hash != b.place.hash) return a.place.hash < b.place.hash;
        const int order = identifier(a.place.object).compare(identifier(b.place.object));
        return order != 0 ? order < 0 : a.position < b.position;
    });
    for (const Candidate& candidate : candidates) {
        const auto& [hash, object] = candidate.place;
        const bool taken = !places_.empty() && places_.back().hash == hash &&
                           identifier(places_.back().object) == identifier(object);
        if (taken) continue;
        places_.push_back(candidate.place);
        entries_[candidate.position].isProfile = true;
    }
    foreignEntries_ = entries_.size() - places_.size();
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
        if (entry.isProfile) result.push_back(entry.object);
    }
    return result;
}

std::optional<ProfilesFile::Profile> ProfilesFile::find(std::string_view identifier) const {
    const auto found = std::ranges::equal_range(places_, hashOf(identifier), {}, &Place::hash);
    for (const Place& place : found) {
        if (this->identifier(place.object) == identifier) return place.object;
    }
    return std::nullopt;
}

std::string ProfilesFile::identifier(Profile profile) const {
    const auto object = list_->find(profile, "identifier");
    return object ? list_->string(*object).value_or("") : "";
}

Value ProfilesFile::value(Profile profile, std::string_view key) const {
    const auto object = list_->find(profile, key);
    return object ? list_->value(*object) : Value();
}

Dictionary ProfilesFile::values(Profile profile) const {
    return *list_->value(profile).dictionary();
}

Result<ProfilesFile> ProfilesFile::adding(const Dictionary& values) const {
    Change change{.entries = entries_, .places = places_, .position = entries_.size(), .values = &values};
    change.entries.push_back({0, true});
    return Draft(*this).finish(std::move(change));
}

Result<ProfilesFile> ProfilesFile::updating(Profile profile, const Dictionary& values) const {
    const auto entry = std::ranges::find_if(
        entries_, [&](const Entry& candidate) { return candidate.isProfile && candidate.object == profile; });
    const auto position = static_cast<std::size_t>(entry - entries_.begin());
    Change change{
        .entries = entries_, .places = places_, .position = position, .values = &values, .previous = profile};
    std::erase_if(change.places, [&](const Place& place) { return place.object == profile; });
    return Draft(*this).finish(std::move(change));
}

Result<ProfilesFile> ProfilesFile::removing(Profile profile) const {
    Change change{.entries = entries_, .places = places_, .previous = profile};
    const std::string name = identifier(profile);
    std::erase_if(change.entries, [&](const Entry& entry) {
        return entry.object == profile || (!entry.isProfile && identifier(entry.object) == name);
    });
    std::erase_if(change.places, [&](const Place& place) { return place.object == profile; });
    return Draft(*this).finish(std::move(change));
}

}  // namespace quietrix
