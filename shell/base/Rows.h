// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/preferences/PSSpecifier.h"

namespace quietrix {

/// A row as a screen's table tells it. What is left out the row does not have; texts come localised.
struct RowParts {
    std::string name;
    platform::PSCellType cell = platform::PSCellType::Link;
    std::optional<std::string> identifier = {};
    /// Whom the setter and the getter are sent to; the row holds it weakly.
    std::shared_ptr<platform::Object> target = {};
    platform::PSSpecifier::Setter set = {};
    platform::PSSpecifier::Getter get = {};
    /// The class of the screen that the row opens.
    std::string_view detail = {};
    platform::Value userInfo = {};
    /// A nil value leaves its property unset.
    platform::Dictionary properties = {};
};

/// A new row at each call.
std::shared_ptr<platform::PSSpecifier> makeRow(RowParts parts);

/// A group with a text under it, and one that has nothing but that text. A new row at each call.
std::shared_ptr<platform::PSSpecifier> makeGroup(std::string_view name, const platform::Value& footer);
std::shared_ptr<platform::PSSpecifier> makeNamelessGroup(const platform::Value& footer);

/// Puts the rows at the end of the list.
void append(platform::SpecifierList& list, const platform::SpecifierList& rows);

}  // namespace quietrix
