// SPDX-License-Identifier: MIT
#include "profile/model/ProfilesFileDraft.h"

#include <algorithm>
#include <iterator>
#include <utility>

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

constexpr std::string_view identifierKey = "identifier";

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

std::vector<ProfilesFile::Draft::Part> ProfilesFile::Draft::oldParts(Profile profile) const {
    std::vector<Part> parts;
    for (const Pair& pair : base_.list_->pairs(profile))
        parts.push_back({*base_.list_->string(pair.key), pair});
    return parts;
}

Result<BinaryList::Object> ProfilesFile::Draft::updated(Profile previous, Dictionary values) {
    std::vector<Part> parts;
    for (Part& part : oldParts(previous)) {
        const auto wanted = values.find(part.name);
        if (wanted == values.end()) {
            if (!isRecordKey(part.name))
                parts.push_back({std::move(part.name), {keep(part.objects.key), keep(part.objects.value)}});
            continue;
        }
        Result<Object> object = 0;
        if (base_.list_->value(part.objects.value) == wanted->second) {
            object = keep(part.objects.value);
        } else {
            object = builder_.add(wanted->second);
            left_ += bytesOf(part.objects.value);
        }
        if (!object) return object;
        values.erase(wanted);
        parts.push_back({std::move(part.name), {keep(part.objects.key), *object}});
    }
    left_ += bytesOf(previous);
    if (const auto rest = appendRest(values, parts); !rest) return std::unexpected(rest.error());
    return addParts(parts);
}

/// It shares the keys, and the values that are equal, of the one before it.
Result<BinaryList::Object> ProfilesFile::Draft::added(Dictionary values) {
    std::vector<Part> parts;
    for (Part& part : last_) {
        const auto wanted = values.find(part.name);
        if (wanted == values.end()) continue;
        const Value value = isLastOld_ ? base_.list_->value(part.objects.value) : part.value;
        const auto present = [&](Object object) { return isLastOld_ ? keep(object) : object; };
        const Result<Object> object = value == wanted->second ? Result<Object>(present(part.objects.value))
                                                              : builder_.add(wanted->second);
        if (!object) return object;
        parts.push_back({std::move(part.name), {present(part.objects.key), *object}, wanted->second});
        values.erase(wanted);
    }
    if (const auto rest = appendRest(values, parts); !rest) return std::unexpected(rest.error());
    last_ = std::move(parts);
    isLastOld_ = false;
    return addParts(last_);
}

Result<void> ProfilesFile::Draft::appendRest(const Dictionary& values, std::vector<Part>& parts) {
    for (const QXProfileKey& key : profileKeys()) {
        const auto wanted = values.find(key.name);
        if (wanted == values.end()) continue;
        const Result<Object> name = builder_.add(Value(key.name));
        const Result<Object> object = builder_.add(wanted->second);
        if (!name || !object) return std::unexpected(name ? object.error() : name.error());
        parts.push_back({std::string(key.name), {*name, *object}, wanted->second});
    }
    return {};
}

BinaryList::Object ProfilesFile::Draft::addParts(const std::vector<Part>& parts) {
    std::vector<Pair> pairs;
    pairs.reserve(parts.size());
    for (const Part& part : parts) pairs.push_back(part.objects);
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

bool ProfilesFile::Draft::carriesRemovedName(Object entry, const Changes& changes) {
    const auto [known, isNew] = carriesName_.try_emplace(entry, false);
    const auto text = isNew ? base_.list_->find(entry, identifierKey) : std::nullopt;
    if (!text) return known->second;
    const auto [verdict, isNewText] = isName_.try_emplace(*text, false);
    if (isNewText && base_.list_->isString(*text))
        verdict->second = changes.removedNames_.contains(*base_.list_->string(*text));
    known->second = verdict->second;
    return known->second;
}

/// What the file has already.
Result<void> ProfilesFile::Draft::fillOld(ProfilesFile& next, const Changes& changes) {
    std::map<Profile, Object> made;
    next.entries_.reserve(base_.entries_.size() + changes.added_.size());
    for (const Entry& entry : base_.entries_) {
        const bool isLeftOut = !changes.removed_.empty() &&
                               (changes.removed_.contains(entry.object()) ||
                                (!entry.isProfile() && carriesRemovedName(entry.object(), changes)));
        if (isLeftOut) continue;
        const auto wanted =
            entry.isProfile() ? changes.updated_.find(entry.object()) : changes.updated_.end();
        if (wanted == changes.updated_.end()) {
            next.entries_.emplace_back(keep(entry.object()), entry.isProfile());
            continue;
        }
        const Result<Object> object = updated(entry.object(), wanted->second);
        if (!object) return std::unexpected(object.error());
        made.emplace(entry.object(), *object);
        next.entries_.emplace_back(*object, true);
    }
    for (const Profile profile : changes.removed_) left_ += bytesOf(profile);

    next.places_.reserve(base_.places_.size() + changes.added_.size());
    for (const Place& place : base_.places_) {
        if (changes.removed_.contains(place.object)) continue;
        const auto replaced = made.find(place.object);
        next.places_.push_back({place.hash, replaced == made.end() ? keep(place.object) : replaced->second});
    }
    return {};
}

Result<void> ProfilesFile::Draft::fillAdded(ProfilesFile& next, const Changes& changes) {
    const auto model =
        std::ranges::find_if(base_.entries_.rbegin(), base_.entries_.rend(), &Entry::isProfile);
    if (model != base_.entries_.rend()) last_ = oldParts(model->object());
    std::vector<Place> places;
    places.reserve(changes.added_.size());
    for (const Dictionary& values : changes.added_) {
        if (values.empty()) continue;
        const Result<Object> object = added(values);
        if (!object) return std::unexpected(object.error());
        next.entries_.emplace_back(*object, true);
        places.push_back({hashOf(values.at(identifierKey).stringOr()), *object});
    }
    std::ranges::sort(places, {}, [](const Place& place) { return std::pair(place.hash, place.object); });
    const std::vector<Place> old = std::exchange(next.places_, {});
    next.places_.reserve(old.size() + places.size());
    std::ranges::merge(old, places, std::back_inserter(next.places_), {}, &Place::hash, &Place::hash);
    return {};
}

Result<ProfilesFile> ProfilesFile::Draft::finish(const Changes& changes) && {
    ProfilesFile next;
    if (const auto filled = fillOld(next, changes); !filled) return std::unexpected(filled.error());
    if (!changes.added_.empty()) {
        if (const auto filled = fillAdded(next, changes); !filled) return std::unexpected(filled.error());
    }
    next.foreignEntries_ = next.entries_.size() - next.places_.size();
    std::vector<Object> elements;
    elements.reserve(next.entries_.size());
    for (const Entry& entry : next.entries_) elements.push_back(entry.object());

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
