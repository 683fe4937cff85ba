// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "platform/foundation/Error.h"
#include "platform/preferences/PSSpecifier.h"
#include "platform/uikit/UITableViewCell.h"

namespace platform {

/// The cell of a row: shows the row's name, icon and detail text. Cells are made by `makeCell`, which picks
/// the class, constructs it, and calls refreshCellContentsWithSpecifier once the cell has an owner.
class PSTableCell : public UITableViewCell {
    PLATFORM_CLASS(PSTableCell, UITableViewCell)

  public:
    using Maker =
        std::function<std::shared_ptr<PSTableCell>(std::int64_t style, const std::string& reuseIdentifier,
                                                   const std::shared_ptr<PSSpecifier>& specifier)>;

    PSTableCell(std::int64_t style, std::string reuseIdentifier, std::shared_ptr<PSSpecifier> specifier);
    /// The default style and no reuse identifier.
    explicit PSTableCell(std::shared_ptr<PSSpecifier> specifier);

    static double defaultCellHeight() { return 44.0; }

    /// The cell for the row: of its property "cellClass" when it has one (an unknown class, or one that is no
    /// cell, is logged and the stock cell made), else of its kind's stock class. The property may name any
    /// class that was registered with PLATFORM_REGISTER_CELL_CLASS.
    static std::shared_ptr<PSTableCell> makeCell(const std::shared_ptr<PSSpecifier>& specifier);
    /// A cell of that very class (headers); null, and a log line, when it is none.
    static std::shared_ptr<PSTableCell> makeCellOfClass(std::string_view className,
                                                        const std::shared_ptr<PSSpecifier>& specifier);
    /// The row height of a class: its own `defaultCellHeight`; 44 for an unknown one.
    static double heightOfClass(std::string_view className);
    /// The height of a row that says nothing of it itself: that of its "cellClass", or of its kind's stock
    /// class.
    static double heightForSpecifier(const PSSpecifier& specifier);
    /// Used by PLATFORM_REGISTER_CELL_CLASS. A name that is taken keeps its first maker.
    static bool registerMaker(const Class& cls, Maker maker, double height);

    /// Null for a cell that stands for no row.
    const std::shared_ptr<PSSpecifier>& specifier() const { return specifier_; }
    /// The height that a header of this kind wants at the width: its class's own unless it says otherwise.
    virtual double preferredHeightForWidth(double width) const;

    /// Takes name, icon and value from the row anew. Called after making and at each look at the row, so that
    /// it shows what the row's getter gives now. It leaves alone what a screen dresses its cells with:
    /// accessory, colours, and the detail text of all rows but title-value ones. A null row leaves everything
    /// as it is.
    virtual void refreshCellContentsWithSpecifier(const std::shared_ptr<PSSpecifier>& specifier);
    /// What the cell's control shows; nil for a cell without one.
    virtual Value controlValue() const { return nullptr; }
    /// What the user's own move of the control to the value does. The error says why it cannot be done: no
    /// control here, one that is disabled, or a value of another type.
    virtual Result<void> userMovedControl(const Value& value);
    /// The control's view; null without one.
    virtual std::shared_ptr<UIView> controlView() const { return nullptr; }

  private:
    std::shared_ptr<PSSpecifier> specifier_;
};

}  // namespace platform

/// In a cell class's source: makes the class known under its name, with its own constructor and height.
#define PLATFORM_REGISTER_CELL_CLASS(Type)                                                   \
    PLATFORM_REGISTER_ABSTRACT_CLASS(Type)                                                   \
    [[maybe_unused]] static const bool maker##Type = ::platform::PSTableCell::registerMaker( \
        Type::staticClass(),                                                                 \
        [](std::int64_t style, const std::string& reuse,                                     \
           const std::shared_ptr<::platform::PSSpecifier>& specifier) {                      \
            return std::shared_ptr<::platform::PSTableCell>(                                 \
                std::make_shared<Type>(style, reuse, specifier));                            \
        },                                                                                   \
        Type::defaultCellHeight());
