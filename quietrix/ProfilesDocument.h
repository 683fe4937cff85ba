// SPDX-License-Identifier: MIT
#pragma once

#include <expected>
#include <optional>
#include <string>
#include <vector>

#include "platform/foundation/Error.h"
#include "profile/model/QXProfilesManager.h"
#include "quietrix/ChangeReport.h"

namespace console {

/// Profiles as a file brings them from one phone to another.
enum class DocumentFormat { JSON, BinaryList, XMLList };

/// By the word on the command line ("json", "plist", "xml"), or by the ending of the file's name; empty for
/// another.
std::optional<DocumentFormat> documentFormat(std::string_view word);

/// The bytes of a document with these profiles: a JSON array, or a property list in the profiles file's own
/// form. The error names what the format cannot hold.
platform::Result<platform::Data> documentOf(const std::vector<Record>& profiles, DocumentFormat format);

/// What a document holds: entries that may be profiles.
struct ProfilesDocument {
    platform::Array entries;
    /// In the profiles file's own form a tone that is missing is none.
    bool isStoreForm = false;

    /// Takes an array of profiles, a dictionary with one under "profiles", or one profile. The error is a
    /// sentence about what is wrong with the bytes.
    static platform::Result<ProfilesDocument> parse(const platform::Data& bytes, DocumentFormat format);
};

/// What bringing the document's profiles into those that are present takes, and what becomes of each. Keys
/// that an entry does not have stay as they are. With entries that are refused there is nothing to change.
struct Import {
    enum class Others { Stay, Go };

    std::vector<quietrix::QXProfilesManager::Change> changes;
    ChangeReport report;

    /// The records are changed.
    static Import plan(const ProfilesDocument& document, const std::vector<Record>& present, Others others);
};

}  // namespace console
