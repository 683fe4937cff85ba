// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <span>

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

}  // namespace platform
