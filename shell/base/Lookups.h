// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "platform/preferences/PSViewController.h"
#include "platform/uikit/UINavigationController.h"

namespace quietrix {

/// Finding rows of a screen's list. All four search from the end, so of several matching rows they give the
/// last; no match gives -1 or null. They look at their arguments only; the screen is named for the call's
/// sake.

/// By the displayed name (the property "label"), ignoring case.
std::int64_t vm__identifierIndex_identifier(const platform::PSViewController& screen,
                                            const platform::SpecifierList& rows, std::string_view identifier);
std::shared_ptr<platform::PSSpecifier> vm__specifierForIdentifier_identifier(
    const platform::PSViewController& screen, const platform::SpecifierList& rows,
    std::string_view identifier);
/// By the identifier, to the letter.
std::int64_t vm__indexByIdentifier_identifier(const platform::PSViewController& screen,
                                              const platform::SpecifierList& rows,
                                              std::string_view identifier);
std::shared_ptr<platform::PSSpecifier> vm__specifierByIdentifier_identifier(
    const platform::PSViewController& screen, const platform::SpecifierList& rows,
    std::string_view identifier);

/// The outermost navigation controller around the screen; null when it is in none.
std::shared_ptr<platform::UINavigationController> __vmRealNavigationController(
    const platform::UIViewController& screen);

}  // namespace quietrix
