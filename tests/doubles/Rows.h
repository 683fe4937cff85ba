// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <source_location>
#include <string_view>
#include <vector>

#include "platform/preferences/PSSpecifier.h"
#include "platform/preferences/PSTableCell.h"
#include "tests/doubles/Required.h"

namespace doubles {

/// Receives what rows set, get and send.
class RowTarget : public platform::Object {
  public:
    void setPreferenceValue(const platform::Value& value, const std::shared_ptr<platform::PSSpecifier>& row) {
        stored = value;
        ++writes;
        written.push_back(row);
    }
    platform::Value preferenceValue(const std::shared_ptr<platform::PSSpecifier>& /*row*/) { return stored; }
    void pressed(const std::shared_ptr<platform::PSSpecifier>& row) { presses.push_back(row); }

    platform::Value stored;
    int writes = 0;
    std::vector<std::shared_ptr<platform::PSSpecifier>> written;
    std::vector<std::shared_ptr<platform::PSSpecifier>> presses;

    static platform::PSSpecifier::Setter setter() {
        return platform::method("setPreferenceValue:specifier:", &RowTarget::setPreferenceValue);
    }
    static platform::PSSpecifier::Getter getter() {
        return platform::method("preferenceValue:", &RowTarget::preferenceValue);
    }
    static platform::PSSpecifier::Action action() {
        return platform::method("pressed:", &RowTarget::pressed);
    }
};

inline std::shared_ptr<platform::PSSpecifier> makeRow(
    std::string_view name, platform::PSCellType type = platform::PSCellType::StaticText,
    std::string_view detail = {}) {
    return platform::PSSpecifier::preferenceSpecifierNamed_target_set_get_detail_cell_edit(
        name, nullptr, {}, {}, detail, type, {});
}

/// A row whose setter and getter are the target's.
inline std::shared_ptr<platform::PSSpecifier> makeControlRow(std::string_view name, platform::PSCellType type,
                                                             const std::shared_ptr<RowTarget>& target) {
    return platform::PSSpecifier::preferenceSpecifierNamed_target_set_get_detail_cell_edit(
        name, target, RowTarget::setter(), RowTarget::getter(), {}, type, {});
}

inline std::shared_ptr<platform::PSSpecifier> makeGroup(std::string_view name) {
    return platform::PSSpecifier::groupSpecifierWithName(name);
}

/// A row of the cell class.
inline std::shared_ptr<platform::PSSpecifier> makeRowOfCellClass(std::string_view name,
                                                                 platform::PSCellType type,
                                                                 std::string_view cellClass) {
    const auto row = makeRow(name, type);
    row->setProperty_forKey(cellClass, "cellClass");
    return row;
}

/// The row's cell as the framework makes it. Ends the test when it is of another class.
template <class Cell>
std::shared_ptr<Cell> makeCellOf(const std::shared_ptr<platform::PSSpecifier>& row,
                                 const std::source_location& where = std::source_location::current()) {
    return required(std::dynamic_pointer_cast<Cell>(platform::PSTableCell::makeCell(row)), where);
}

}  // namespace doubles
