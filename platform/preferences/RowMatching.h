// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>

#include "platform/preferences/PSSpecifier.h"

namespace platform {

/// A row with the key by which it is known while its list is open.
struct KeyedRow {
    /// May be null: a list may have holes.
    std::shared_ptr<PSSpecifier> specifier;
    RowKey key = 0;
};

/// Gives each row of now, all of which have the key 0, the key that the same row has before, or one that no
/// row has had yet, on whatever screen.
///
/// The same row is the same specifier; else the only row, before and now, of its kind, identifier and user
/// info, whatever it is called by then; else one that has the same name too, the first for the first among
/// equals: among those of the same section, then among those that are left. A row with neither identifier
/// nor user info has nothing but its name to be known by.
///
/// User infos are equal when they are equal values. An object that answers an "identifier" to key-value
/// access is equal to another of its class that answers the same, any other object to itself only. Of a
/// dictionary or an array the entries count, not what stands in containers among them.
///
/// The work is linear in the number of rows. Main thread.
void keyRows(std::span<const KeyedRow> before, std::span<KeyedRow> now);

/// What a row is known by, to be kept where its specifier cannot be: in another process.
struct RowTraits {
    RowKey key = 0;
    PSCellType kind = PSCellType::StaticText;
    std::optional<std::string> name;
    std::optional<std::string> identifier;
    /// Empty for none. Equal user infos have equal texts; an object that is equal to itself only has one that
    /// no other has.
    std::string userInfo;
};

/// The row's specifier may not be null. Main thread.
RowTraits traitsOf(const KeyedRow& row);
/// A row that keyRows() takes for the one with these traits, and that is good for nothing else. Main thread.
KeyedRow rowWithTraits(const RowTraits& traits);

/// The highest key that any row has had so far; 0 before the first. Any thread.
RowKey lastRowKey();
/// Rows that are new from now on get higher keys than this one. Any thread.
void rowKeysAbove(RowKey key);

}  // namespace platform
