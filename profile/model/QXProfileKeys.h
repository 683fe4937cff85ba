// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <variant>

#include "platform/foundation/Value.h"
#include "profile/model/KeyIdentity.h"

namespace quietrix {

class QXProfile;

/// Where a key's value lives.
enum class KeyStorage {
    Stored,    ///< in the record and in the profiles file
    InMemory,  ///< in the record only
    Derived    ///< computed by the record; read-only
};

/// What a key takes and gives, for key-value access.
enum class KeyType { Text, OptionalText, Boolean, Real, Integer, TextList, Date };

/// One key of a profile. Key-value access, reading a record, writing one and its defaults all go by the table
/// of these, so a key is declared exactly once.
struct QXProfileKey {
    /// A key without a default value starts as nil or as an empty list, as its type has it.
    using Default = std::variant<std::monostate, bool, std::int64_t, double, std::string_view>;

    std::string_view name;
    KeyType type;
    KeyStorage storage;
    Default defaultValue;
    /// Booleans give boolean values, reals real ones; a date that cannot be derived gives nil.
    platform::Value (*get)(const QXProfile& profile);
    /// Null for a read-only key. Answers whether the value was of a type that the key takes; if not, nothing
    /// changed. Booleans also take the integers 0 and 1, reals every number but NaN, optional texts nil.
    bool (*set)(QXProfile& profile, const platform::Value& value);
    /// What the record knows the key by; null for a read-only key.
    KeyIdentity (*identity)();

    bool isStored() const { return storage == KeyStorage::Stored; }
    platform::Value defaultAsValue() const;
};

/// All keys, in the order in which a record is written.
std::span<const QXProfileKey> profileKeys();

/// The key of that name, or null.
const QXProfileKey* profileKey(std::string_view name);

/// What a key's type, or a value's, is called in a log line.
std::string_view nameOfType(KeyType type);
std::string_view nameOfType(platform::Value::Type type);

}  // namespace quietrix
