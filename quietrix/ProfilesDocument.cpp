// SPDX-License-Identifier: MIT
#include "quietrix/ProfilesDocument.h"

#include <map>
#include <set>
#include <string_view>

#include "device/EscapedText.h"
#include "json/JSONValue.h"
#include "platform/foundation/PropertyList.h"
#include "quietrix/Assignment.h"
#include "quietrix/JSONText.h"
#include "quietrix/ProfileText.h"

namespace console {

using Change = quietrix::QXProfilesManager::Change;
using platform::PropertyListFormat;
using platform::PropertyListSerialization;
using platform::Result;
using platform::Value;

namespace {

constexpr const char* profilesKey = "profiles";
constexpr const char* formatKey = "format";
constexpr const char* identifierKey = "identifier";
constexpr const char* toneKey = "alertToneIdentifier";

/// What stands in the way of an entry, empty for nothing.
std::string fault(const platform::Dictionary& entry) {
    std::string faults;
    for (const auto& [name, value] : entry) {
        std::string sentence;
        if (const KeyForm* form = keyForm(name)) {
            if (const auto accepted = acceptedValue(*form, value); !accepted)
                sentence = accepted.error().localizedDescription;
        } else {
            sentence = "A profile has no key " + device::quotedText(name) + ".";
        }
        if (!sentence.empty()) faults += (faults.empty() ? "" : " ") + sentence;
    }
    return faults;
}

/// The record with the entry's values, which have no fault.
void apply(const platform::Dictionary& entry, quietrix::QXProfile& profile) {
    for (const auto& [name, value] : entry)
        setIfDifferent(profile, name, acceptedValue(*keyForm(name), value).value_or(Value()));
}

class Planning {
  public:
    Planning(const ProfilesDocument& document, const std::vector<Record>& present) : document_(document) {
        for (const Record& profile : present) present_.emplace(profile->identifier(), profile);
    }

    void take(const Value& entry, std::size_t number) {
        const platform::Dictionary* values = entry.dictionary();
        if (!values)
            return refuse({}, number,
                          "It is no profile but " + std::string(quietrix::nameOfType(entry.type())) + ".");
        const std::string identifier = entry[identifierKey].stringOr();
        const ChangeReport::Named named{identifier, entry["title"].stringOr()};
        if (identifier.empty()) return refuse(named, number, "It has no identifier.");
        if (!named_.insert(identifier).second)
            return refuse(named, number, "An earlier one has the same identifier.");
        platform::Dictionary wanted = *values;
        const auto known = present_.find(identifier);
        if (known != present_.end()) keepPresent(wanted, *known->second);
        if (const std::string reason = fault(wanted); !reason.empty()) return refuse(named, number, reason);
        if (document_.isStoreForm && !values->contains(toneKey)) wanted.emplace(toneKey, Value());
        if (known == present_.end()) {
            add(wanted);
        } else {
            update(wanted, known->second);
        }
    }

    void removeOthers(const std::vector<Record>& present) {
        for (const Record& profile : present) {
            if (named_.contains(profile->identifier())) continue;
            import_.report.removed.push_back(ChangeReport::named(*profile));
            import_.changes.push_back({Change::Kind::Delete, profile});
        }
    }

    Import finish() {
        if (!import_.report.refused.empty()) import_.changes.clear();
        return std::move(import_);
    }

  private:
    void refuse(const ChangeReport::Named& named, std::size_t number, std::string reason) {
        import_.report.refused.push_back({{named.identifier, named.title}, number, std::move(reason)});
    }
    /// What a profile holds already it may hold, whoever put it there.
    static void keepPresent(platform::Dictionary& wanted, const quietrix::QXProfile& profile) {
        for (const auto& [name, value] : profile.storedValues()) {
            const auto same = wanted.find(name);
            if (same != wanted.end() && same->second == value) wanted.erase(name);
        }
    }
    void add(const platform::Dictionary& wanted) {
        const auto profile = std::make_shared<quietrix::QXProfile>();
        apply(wanted, *profile);
        import_.report.added.push_back(ChangeReport::named(*profile));
        import_.changes.push_back({Change::Kind::Add, profile});
    }
    void update(const platform::Dictionary& wanted, const Record& profile) {
        const platform::Dictionary before = profile->storedValues();
        apply(wanted, *profile);
        auto changes = differenceBetween(before, profile->storedValues());
        if (changes.empty()) {
            ++import_.report.unchanged;
            return;
        }
        import_.report.changed.push_back({ChangeReport::named(*profile), std::move(changes)});
        import_.changes.push_back({Change::Kind::Update, profile});
    }

    const ProfilesDocument& document_;
    std::map<std::string, Record> present_;
    std::set<std::string> named_;
    Import import_;
};

}  // namespace

std::optional<DocumentFormat> documentFormat(std::string_view word) {
    if (word == "json" || word.ends_with(".json")) return DocumentFormat::JSON;
    if (word == "plist" || word.ends_with(".plist")) return DocumentFormat::BinaryList;
    if (word == "xml" || word.ends_with(".xml")) return DocumentFormat::XMLList;
    return std::nullopt;
}

Result<platform::Data> documentOf(const std::vector<Record>& profiles, DocumentFormat format) {
    if (format == DocumentFormat::JSON) {
        const std::string text = jsonText(jsonOfProfiles(profiles), Layout::Indented) + "\n";
        return platform::Data(text.begin(), text.end());
    }
    platform::Array list;
    for (const Record& profile : profiles) list.emplace_back(profile->storedValues());
    const platform::Dictionary root{{formatKey, 1}, {profilesKey, std::move(list)}};
    return PropertyListSerialization::dataWithPropertyList(
        root, format == DocumentFormat::XMLList ? PropertyListFormat::XML : PropertyListFormat::Binary);
}

Result<ProfilesDocument> ProfilesDocument::parse(const platform::Data& bytes, DocumentFormat format) {
    Value root;
    if (format == DocumentFormat::JSON) {
        const std::string text(bytes.begin(), bytes.end());
        const auto json = parsedJSON(text);
        if (!json) return std::unexpected(json.error());
        root = json::valueOf(*json);
    } else {
        const auto list = PropertyListSerialization::propertyListWithData(bytes);
        if (!list) return std::unexpected(list.error());
        root = *list;
    }
    if (root.array()) return ProfilesDocument{*root.array(), false};
    if (!root.dictionary())
        return platform::failure("It holds no profiles but " +
                                 std::string(quietrix::nameOfType(root.type())) + ".");
    if (!root.dictionary()->contains(profilesKey)) return ProfilesDocument{{root}, false};
    const Value profiles = root[profilesKey];
    if (!profiles.array())
        return platform::failure("It holds " + std::string(quietrix::nameOfType(profiles.type())) +
                                 " under \"profiles\", where profiles should be.");
    const bool isList = format != DocumentFormat::JSON;
    return ProfilesDocument{*profiles.array(), isList && root.dictionary()->contains(formatKey)};
}

Import Import::plan(const ProfilesDocument& document, const std::vector<Record>& present, Others others) {
    Planning planning(document, present);
    for (std::size_t i = 0; i < document.entries.size(); ++i) planning.take(document.entries[i], i + 1);
    if (others == Others::Go) planning.removeOthers(present);
    return planning.finish();
}

}  // namespace console
