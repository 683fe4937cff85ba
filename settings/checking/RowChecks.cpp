// SPDX-License-Identifier: MIT
#include "settings/checking/RowChecks.h"

#include <set>
#include <utility>

#include "platform/preferences/PSEditingPane.h"

namespace settings {

using platform::ClassRegistry;
using platform::PSCellType;
using platform::PSSpecifier;

namespace {

bool isClassOf(const std::string& name, const platform::Class& base) {
    const platform::Class* cls = ClassRegistry::shared().find(name);
    return cls != nullptr && cls->isSubclassOf(base);
}

bool opensScreen(const PSSpecifier& row) {
    return row.cellType() == PSCellType::Link || row.cellType() == PSCellType::LinkList;
}

bool hasControl(const PSSpecifier& row) {
    const PSCellType type = row.cellType();
    return type == PSCellType::Switch || type == PSCellType::Slider || type == PSCellType::EditText ||
           type == PSCellType::Segment;
}

/// Looks at one row and tells what is wrong with it.
class RowCheck {
  public:
    RowCheck(std::string screen, Findings& findings, const std::string& language)
        : screen_(std::move(screen)), findings_(findings), language_(language) {}

    void check(const PSSpecifier& row) {
        row_ = nameOfRow(row);
        checkClasses(row);
        checkMethods(row);
        const std::string identifier = row.identifier().value_or("");
        if (!identifier.empty() && !identifiers_.insert(identifier).second)
            tell(FindingKind::DuplicateIdentifier, identifier,
                 "The identifier \"" + identifier + "\" is that of another row of the screen too.");
    }

  private:
    void checkClasses(const PSSpecifier& row) {
        if (opensScreen(row) && !row.detailControllerClass().empty() &&
            !isScreenClass(row.detailControllerClass()))
            tellClass("opens the screen", row.detailControllerClass());
        if (!row.editPaneClass().empty() &&
            !isClassOf(row.editPaneClass(), platform::PSEditingPane::staticClass()))
            tellClass("names the pane", row.editPaneClass());
        for (const char* property : {"cellClass", "headerCellClass"}) {
            const platform::Value cell = row.propertyForKey(property);
            if (cell.string() && !isClassOf(*cell.string(), platform::PSTableCell::staticClass()))
                tellClass("is drawn by the cell", *cell.string());
        }
    }

    void checkMethods(const PSSpecifier& row) {
        const bool isShown = hasControl(row) || row.cellType() == PSCellType::TitleValue;
        const bool hasTarget = row.target() != nullptr;
        if (hasControl(row) && !(row.setter() && hasTarget))
            tell(FindingKind::MissingSetter, "setter",
                 row.setter() ? "The target of its setter does not exist."
                              : "It has a control and no setter.");
        if (isShown && row.propertyForKey("value").isNil() && !(row.getter() && hasTarget))
            tell(FindingKind::MissingGetter, "getter",
                 row.getter() ? "The target of its getter does not exist."
                              : "It shows a value and has no getter.");
        if (row.cellType() == PSCellType::Button && !(row.buttonAction() && hasTarget))
            tell(FindingKind::MissingAction, "action",
                 row.buttonAction() ? "The target of its action does not exist."
                                    : "It is a button without an action.");
    }

    void tellClass(const std::string& what, const std::string& name) {
        tell(FindingKind::MissingClass, name,
             "It " + what + " \"" + name + "\", but there is no such class of that kind.");
    }

    void tell(FindingKind kind, const std::string& subject, std::string text) {
        findings_.add(
            {.kind = kind, .screen = screen_, .row = row_, .subject = subject, .text = std::move(text)},
            language_);
    }

    std::string screen_;
    Findings& findings_;
    const std::string& language_;
    std::string row_;
    std::set<std::string> identifiers_;
};

}  // namespace

std::string nameOfRow(const PSSpecifier& row) {
    const std::string identifier = row.identifier().value_or("");
    return identifier.empty() ? row.name().value_or("") : identifier;
}

bool isScreenClass(const std::string& name) {
    return isClassOf(name, platform::UIViewController::staticClass());
}

void checkRows(platform::PSListController& list, Findings& findings, const std::string& language) {
    RowCheck check(list.getClass().name(), findings, language);
    for (std::int64_t index = 0; const auto row = list.specifierAtIndex(index); ++index) check.check(*row);
}

}  // namespace settings
