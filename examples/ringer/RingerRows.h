// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/preferences/PSSpecifier.h"
#include "platform/preferences/PSViewController.h"

namespace ringer {

/// The bundle's text for the key, which is its English text; the key itself where a language lacks it. Main
/// thread.
std::string text(std::string_view key);
/// The text with the value in place of its "%@".
std::string textWith(std::string_view key, const platform::Value& value);

/// What a row of ours has; what is left out it does not have. `name` comes translated.
struct RowParts {
    std::string name;
    std::string identifier;
    platform::PSCellType cell = platform::PSCellType::StaticText;
    /// Whom setter, getter and action are sent to; the row holds it weakly.
    std::shared_ptr<platform::Object> target = {};
    platform::PSSpecifier::Setter set = {};
    platform::PSSpecifier::Getter get = {};
    platform::PSSpecifier::Action action = {};
    /// Classes by their names: the screen that the row opens, and the pane on it.
    std::string_view detail = {};
    std::string_view pane = {};
    platform::Value userInfo = {};
    platform::Dictionary properties = {};
};
std::shared_ptr<platform::PSSpecifier> makeRow(RowParts parts);
/// A group row with a text beneath its section.
std::shared_ptr<platform::PSSpecifier> makeGroup(std::string_view name, std::string_view footer = {});

/// Tells the user what went wrong on that screen; a success shows nothing.
void showError(platform::UIViewController& screen, const platform::Result<void>& result);

}  // namespace ringer
