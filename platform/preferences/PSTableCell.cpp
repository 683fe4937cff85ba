// SPDX-License-Identifier: MIT
#include "platform/preferences/PSTableCell.h"

#include <map>
#include <utility>

#include "platform/foundation/LogSink.h"

namespace platform {

PLATFORM_REGISTER_CELL_CLASS(PSTableCell)

namespace {

struct CellClass {
    PSTableCell::Maker maker;
    double height;
};

// Never destroyed, and made at the first registration: cell classes register from static initialisers.
std::map<std::string, CellClass, std::less<>>& cellClasses() {
    static auto& classes = *new std::map<std::string, CellClass, std::less<>>;
    return classes;
}

const CellClass* findCellClass(std::string_view name) {
    const auto found = cellClasses().find(name);
    return found == cellClasses().end() ? nullptr : &found->second;
}

void logNoCellClass(std::string_view name) {
    const bool exists = ClassRegistry::shared().find(name) != nullptr;
    const std::string quoted = "\"" + std::string(name) + "\"";
    log("PSTableCell: " + (exists ? "The class " + quoted + " is no \"PSTableCell\"."
                                  : "There is no class named " + quoted + "."));
}

std::string_view stockClass(PSCellType type) {
    switch (type) {
        case PSCellType::Switch:
            return "PSSwitchTableCell";
        case PSCellType::Slider:
            return "PSSliderTableCell";
        case PSCellType::EditText:
            return "PSEditableTableCell";
        default:
            return "PSTableCell";
    }
}

bool isLink(PSCellType type) {
    return type == PSCellType::Link || type == PSCellType::LinkList;
}

std::int64_t styleFor(const PSSpecifier& specifier) {
    const PSCellType type = specifier.cellType();
    return isLink(type) || type == PSCellType::TitleValue ? UITableViewCellStyleValue1
                                                          : UITableViewCellStyleDefault;
}

std::shared_ptr<PSTableCell> makeKnown(std::string_view name, const std::shared_ptr<PSSpecifier>& specifier) {
    const CellClass* cls = findCellClass(name);
    if (cls == nullptr) return nullptr;
    auto cell = cls->maker(specifier ? styleFor(*specifier) : UITableViewCellStyleDefault, std::string(name),
                           specifier);
    cell->refreshCellContentsWithSpecifier(specifier);
    return cell;
}

}  // namespace

PSTableCell::PSTableCell(std::int64_t style, std::string reuseIdentifier,
                         std::shared_ptr<PSSpecifier> specifier)
    : UITableViewCell(style, std::move(reuseIdentifier)), specifier_(std::move(specifier)) {
    // Here and not in each refresh: a screen may replace the arrow by its own checkmarks.
    if (specifier_ && isLink(specifier_->cellType()))
        setAccessoryType(UITableViewCellAccessoryDisclosureIndicator);
}

PSTableCell::PSTableCell(std::shared_ptr<PSSpecifier> specifier)
    : PSTableCell(UITableViewCellStyleDefault, {}, std::move(specifier)) {}

std::shared_ptr<PSTableCell> PSTableCell::makeCell(const std::shared_ptr<PSSpecifier>& specifier) {
    if (!specifier) return nullptr;
    const Value wanted = specifier->propertyForKey("cellClass");
    if (const std::string* name = wanted.string()) {
        if (auto cell = makeKnown(*name, specifier)) return cell;
        logNoCellClass(*name);
    } else if (!wanted.isNil()) {
        logNoCellClass(wanted.description());
    }
    return makeKnown(stockClass(specifier->cellType()), specifier);
}

std::shared_ptr<PSTableCell> PSTableCell::makeCellOfClass(std::string_view className,
                                                          const std::shared_ptr<PSSpecifier>& specifier) {
    auto cell = makeKnown(className, specifier);
    if (!cell) logNoCellClass(className);
    return cell;
}

double PSTableCell::heightOfClass(std::string_view className) {
    const CellClass* cls = findCellClass(className);
    return cls == nullptr ? defaultCellHeight() : cls->height;
}

double PSTableCell::heightForSpecifier(const PSSpecifier& specifier) {
    const Value wanted = specifier.propertyForKey("cellClass");
    const std::string* name = wanted.string();
    return heightOfClass(
        name != nullptr && findCellClass(*name) != nullptr ? *name : stockClass(specifier.cellType()));
}

bool PSTableCell::registerMaker(const Class& cls, Maker maker, double height) {
    return cellClasses().try_emplace(cls.name(), CellClass{std::move(maker), height}).second;
}

double PSTableCell::preferredHeightForWidth(double /*width*/) const {
    return heightOfClass(getClass().name());
}

void PSTableCell::refreshCellContentsWithSpecifier(const std::shared_ptr<PSSpecifier>& specifier) {
    if (!specifier) return;
    specifier_ = specifier;
    textLabel()->setText(specifier->name());
    imageView()->setImage(specifier->propertyForKey("iconImage").objectAs<UIImage>());
    if (specifier->cellType() == PSCellType::TitleValue) {
        const Value value = specifier->performGetter();
        detailTextLabel()->setText(value.isNil() ? std::optional<std::string>() : value.description());
    }
    if (specifier->cellType() == PSCellType::Button) {
        const bool destructive = specifier->propertyForKey("isDestructive").isTrue();
        textLabel()->setTextColor(destructive ? UIColor::redColor() : nullptr);
    }
    setNeedsLayout();
}

Result<void> PSTableCell::userMovedControl(const Value& /*value*/) {
    return failure("The row \"" + textLabel()->text().value_or("") + "\" has no control.");
}

}  // namespace platform
