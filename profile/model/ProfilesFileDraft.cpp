// SPDX-License-Identifier: MIT
#include "profile/model/ProfilesFileDraft.h"

#include <algorithm>

#include "profile/model/QXProfileKeys.h"

namespace quietrix {

using platform::BinaryList;
using platform::BinaryListBuilder;
using platform::Dictionary;
using platform::Result;
using platform::Value;

namespace {

// The array of the profiles and the root, which every change makes anew.
constexpr BinaryList::Object tailCount = 2;

// A small file may carry a few changes' remains rather than be written anew each time.
constexpr std::uint64_t alwaysAllowed = 4096;

bool isRecordKey(std::string_view name) {
    const QXProfileKey* key = profileKey(name);
    return key && key->isStored();
}

}  // namespace

ProfilesFile::Draft::Draft(const ProfilesFile& base)
    : base_(base),
      builder_(canContinue(base) ? BinaryListBuilder(*base.list_, base.list_->count() - base.tail_)
                                 : BinaryListBuilder()) {
    if (base.list_ && !canContinue(base)) copies_.emplace(*base.list_);
}

bool ProfilesFile::Draft::canContinue(const ProfilesFile& base) {
    if (!base.list_ || !BinaryListBuilder::continuable(*base.list_)) return false;
    return base.bytes().size() <= base.liveBytes_ + base.liveBytes_ / 2 + alwaysAllowed;
}

BinaryList::Object ProfilesFile::Draft::keep(Object old) {
    return copies_ ? builder_.copy(old, *copies_) : old;
}

std::uint64_t ProfilesFile::Draft::bytesOf(Object old) const {
    constexpr std::uint64_t offset = 4;
    std::uint64_t bytes = base_.list_->encoded(old).size() + offset;
    for (const Object element : base_.list_->elements(old))
        bytes += base_.list_->encoded(element).size() + offset;
    return bytes;
}

Result<BinaryList::Object> ProfilesFile::Draft::record(const Change& change) {
    Dictionary values = *change.values;
    std::vector<BinaryList::Pair> pairs;
    // A new profile shares the keys, and the values that are equal, of the one before it.
    std::optional<Profile> model = change.previous;
    if (!model && !base_.places_.empty()) {
        model = std::ranges::find_if(base_.entries_.rbegin(), base_.entries_.rend(), [](const Entry& entry) {
                    return entry.isProfile();
                })->object();
    }
    for (const auto& [key, value] : model ? base_.list_->pairs(*model) : std::vector<BinaryList::Pair>()) {
        const std::string name = *base_.list_->string(key);
        const auto wanted = values.find(name);
        if (wanted == values.end()) {
            if (change.previous && !isRecordKey(name)) pairs.push_back({keep(key), keep(value)});
            continue;
        }
        Result<Object> object = 0;
        if (base_.list_->value(value) == wanted->second) {
            object = keep(value);
        } else {
            object = builder_.add(wanted->second);
            if (change.previous) left_ += bytesOf(value);
        }
        if (!object) return object;
        pairs.push_back({keep(key), *object});
        values.erase(wanted);
    }
    for (const QXProfileKey& key : profileKeys()) {
        const auto wanted = values.find(key.name);
        if (wanted == values.end()) continue;
        const Result<Object> name = builder_.add(Value(key.name));
        const Result<Object> object = builder_.add(wanted->second);
        if (!name || !object) return name ? object : name;
        pairs.push_back({*name, *object});
    }
    return builder_.addDictionary(pairs);
}

Result<ProfilesFile::Draft::Root> ProfilesFile::Draft::root() {
    Root root;
    if (!base_.list_) {
        const Result<Object> formatName = builder_.add(Value(formatKey));
        const Result<Object> format = builder_.add(Value(currentFormat));
        const Result<Object> profilesName = builder_.add(Value(profilesKey));
        if (!formatName || !format || !profilesName)
            return platform::failure("The profiles file cannot be begun.");
        root.pairs = {{*formatName, *format}, {*profilesName, 0}};
        root.profilesAt = 1;
        return root;
    }
    root.pairs = base_.list_->pairs(base_.list_->root());
    for (std::size_t i = 0; i < root.pairs.size(); ++i) {
        if (base_.list_->string(root.pairs[i].key) == profilesKey) root.profilesAt = i;
    }
    for (std::size_t i = 0; i < root.pairs.size(); ++i) {
        auto& [key, value] = root.pairs[i];
        key = keep(key);
        if (i != root.profilesAt) value = keep(value);
    }
    return root;
}

Result<ProfilesFile> ProfilesFile::Draft::finish(Change change) && {
    Object made = 0;
    if (change.values) {
        const Result<Object> object = record(change);
        if (!object) return std::unexpected(object.error());
        made = *object;
    }
    if (change.previous) left_ += bytesOf(*change.previous);

    ProfilesFile next;
    next.places_ = std::move(change.places);
    for (Place& place : next.places_) place.object = keep(place.object);
    if (change.values) {
        const Place place{hashOf(change.values->at("identifier").stringOr()), made};
        next.places_.insert(std::ranges::upper_bound(next.places_, place.hash, {}, &Place::hash), place);
    }
    next.entries_ = std::move(change.entries);
    std::vector<Object> elements;
    elements.reserve(next.entries_.size());
    for (Entry& entry : next.entries_) {
        const bool isMade = change.values && elements.size() == change.position;
        entry = Entry(isMade ? made : keep(entry.object()), entry.isProfile());
        elements.push_back(entry.object());
    }
    next.foreignEntries_ = next.entries_.size() - next.places_.size();

    // Nothing may come between and after these two: the next change takes them off again.
    auto rootEntries = root();
    if (!rootEntries) return std::unexpected(rootEntries.error());
    rootEntries->pairs[rootEntries->profilesAt].value = builder_.addArray(elements);
    auto bytes = std::move(builder_).finish(builder_.addDictionary(rootEntries->pairs));
    if (!bytes) return std::unexpected(bytes.error());
    next.tail_ = tailCount;
    next.list_ = BinaryList::trusted(*std::move(bytes));
    next.liveBytes_ = next.bytes().size();
    if (base_.list_ && !copies_) {
        const std::uint64_t left =
            base_.bytes().size() - std::min(base_.bytes().size(), base_.liveBytes_) + left_;
        next.liveBytes_ -= std::min(next.liveBytes_, left);
    }
    return next;
}

}  // namespace quietrix
