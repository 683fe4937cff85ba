// SPDX-License-Identifier: MIT
// A profiles file as anybody could have left it: what is taken over must survive every kind of change with
// all that it holds. PropertyListFuzzer looks at the bytes themselves.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "platform/foundation/PropertyList.h"
#include "profile/model/ProfilesFileChanges.h"
#include "profile/model/QXProfile.h"

namespace {

using quietrix::ProfilesFile;
using quietrix::QXProfile;

void require(bool holds) {
    if (!holds) std::abort();
}

/// The next state read back from its bytes, as another process would read it.
ProfilesFile reread(const platform::Result<ProfilesFile>& next) {
    require(next.has_value());
    auto parsed = ProfilesFile::parse(next->bytes());
    require(parsed.has_value());
    require(parsed->profiles().size() == next->profiles().size());
    require(parsed->foreignEntries() == next->foreignEntries());
    return *std::move(parsed);
}

void requireSame(const ProfilesFile& before, const ProfilesFile& after, std::string_view except) {
    for (const auto profile : before.profiles()) {
        const std::string identifier = before.identifier(profile);
        if (identifier == except) continue;
        const auto same = after.find(identifier);
        require(same && platform::Value(before.values(profile)) == platform::Value(after.values(*same)));
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const platform::Data bytes(data, data + size);
    const auto file = ProfilesFile::parse(bytes);
    if (!file) {
        require(!file.error().localizedDescription.empty());
        return 0;
    }
    const auto profiles = file->profiles();
    for (const auto profile : profiles) {
        require(file->find(file->identifier(profile)) == profile);
        const auto record = QXProfile::profileWithValues(file->values(profile));
        require(record->identifier() == file->identifier(profile));
    }
    if (const auto root = platform::PropertyListSerialization::propertyListWithData(bytes)) {
        const platform::Value entries = (*root)["profiles"];
        require(entries.array() && entries.array()->size() == profiles.size() + file->foreignEntries());
        for (const platform::Value& entry : *entries.array()) {
            const auto found = file->find(entry["identifier"].stringOr());
            require(!found || entry["identifier"].string());
        }
    }

    QXProfile added;
    added.setIdentifier("the one that the fuzzer adds");
    if (!file->find(added.identifier())) {
        ProfilesFile::Changes addition(*file);
        addition.add(added.storedValues());
        const ProfilesFile longer = reread(addition.finish());
        requireSame(*file, longer, {});
        require(platform::Value(added.storedValues()) ==
                platform::Value(longer.values(*longer.find(added.identifier()))));
    }
    if (profiles.empty()) return 0;
    const std::string identifier = file->identifier(profiles.front());
    added.setIdentifier(identifier);
    ProfilesFile::Changes update(*file);
    update.update(identifier, added.storedValues());
    const auto updated = update.finish();
    requireSame(*file, reread(updated), identifier);
    ProfilesFile::Changes removal(*updated);
    removal.remove(identifier);
    const auto removed = removal.finish();
    requireSame(*file, reread(removed), identifier);
    require(!removed->find(identifier));
    return 0;
}
