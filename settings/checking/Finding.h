// SPDX-License-Identifier: MIT
#pragma once

#include <compare>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace settings {

enum class FindingKind {
    MissingClass,
    MissingSetter,
    MissingGetter,
    MissingAction,
    DuplicateIdentifier,
    MissingTranslation,
    DifferentPlaceholders,
    CutLabel,
    SmallTarget,
    MissingImage,
    ScreenStays,
    ObserverStays,
    SlowCommand
};

/// As reports and lists of accepted findings spell it, "missingClass".
std::string_view nameOfKind(FindingKind kind);

/// One mistake of a bundle, found in any number of languages.
struct Finding {
    FindingKind kind = FindingKind::MissingClass;
    /// The class of the screen; "" for what concerns the bundle's files and no screen.
    std::string screen;
    /// The row's identifier, else its name; "" for what is no row's.
    std::string row;
    /// What it is about, the same in every run: the class, the text, the image.
    std::string subject;
    /// A sentence for people.
    std::string text;
    std::set<std::string> languages = {};
};

/// What was found, each mistake once: the same kind, screen, row and subject in another language, on another
/// device or with other data is the same mistake.
class Findings {
  public:
    void add(Finding finding, const std::string& language);
    /// In the order of screens, rows and kinds.
    const std::vector<Finding>& all() const { return findings_; }

  private:
    std::vector<Finding> findings_;
};

}  // namespace settings
