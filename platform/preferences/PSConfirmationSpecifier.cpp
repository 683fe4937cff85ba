// SPDX-License-Identifier: MIT
#include "platform/preferences/PSConfirmationSpecifier.h"

#include <utility>

namespace platform {

PLATFORM_REGISTER_CLASS(PSConfirmationSpecifier)

std::shared_ptr<PSConfirmationSpecifier>
PSConfirmationSpecifier::preferenceSpecifierNamed_target_set_get_detail_cell_edit(
    std::string_view name, const std::shared_ptr<Object>& target, Setter set, Getter get,
    std::string_view detail, PSCellType cell, std::string_view edit) {
    auto specifier = std::make_shared<PSConfirmationSpecifier>();
    specifier->fill(name, target, std::move(set), std::move(get), detail, cell, edit);
    return specifier;
}

}  // namespace platform
