// SPDX-License-Identifier: MIT
#include "shell/base/Rows.h"

#include <utility>

namespace quietrix {

using platform::PSSpecifier;
using platform::SpecifierList;

std::shared_ptr<PSSpecifier> makeRow(RowParts parts) {
    auto row = PSSpecifier::preferenceSpecifierNamed_target_set_get_detail_cell_edit(
        parts.name, parts.target, std::move(parts.set), std::move(parts.get), parts.detail, parts.cell, "");
    row->setIdentifier(std::move(parts.identifier));
    row->setUserInfo(std::move(parts.userInfo));
    for (const auto& [key, value] : parts.properties) row->setProperty_forKey(value, key);
    return row;
}

std::shared_ptr<PSSpecifier> makeGroup(std::string_view name, const platform::Value& footer) {
    auto group = PSSpecifier::groupSpecifierWithName(name);
    group->setProperty_forKey(footer, "footerText");
    return group;
}

std::shared_ptr<PSSpecifier> makeNamelessGroup(const platform::Value& footer) {
    auto group = PSSpecifier::emptyGroupSpecifier();
    group->setProperty_forKey(footer, "footerText");
    return group;
}

void append(SpecifierList& list, const SpecifierList& rows) {
    list.insert(list.end(), rows.begin(), rows.end());
}

}  // namespace quietrix
