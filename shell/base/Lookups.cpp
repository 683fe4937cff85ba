// SPDX-License-Identifier: MIT
#include "shell/base/Lookups.h"

#include <functional>

#include "platform/foundation/CaseInsensitive.h"
#include "velmora/VMNavigationBarColors.h"

namespace quietrix {

using platform::PSSpecifier;
using platform::PSViewController;
using platform::SpecifierList;

namespace {

std::int64_t lastIndexWhere(const SpecifierList& rows,
                            const std::function<bool(const PSSpecifier&)>& matches) {
    for (auto index = static_cast<std::int32_t>(rows.size()) - 1; index >= 0; --index) {
        if (matches(*rows[static_cast<std::size_t>(index)])) return index;
    }
    return -1;
}

std::shared_ptr<PSSpecifier> rowAt(const SpecifierList& rows, std::int64_t index) {
    return index < 0 ? nullptr : rows[static_cast<std::size_t>(index)];
}

}  // namespace

std::int64_t vm__identifierIndex_identifier(const PSViewController&, const SpecifierList& rows,
                                            std::string_view identifier) {
    return lastIndexWhere(rows, [identifier](const PSSpecifier& row) {
        const platform::Value label = row.propertyForKey("label");
        return label.string() && platform::equalIgnoringCase(*label.string(), identifier);
    });
}

std::shared_ptr<PSSpecifier> vm__specifierForIdentifier_identifier(const PSViewController& screen,
                                                                   const SpecifierList& rows,
                                                                   std::string_view identifier) {
    return rowAt(rows, vm__identifierIndex_identifier(screen, rows, identifier));
}

std::int64_t vm__indexByIdentifier_identifier(const PSViewController&, const SpecifierList& rows,
                                              std::string_view identifier) {
    return lastIndexWhere(rows,
                          [identifier](const PSSpecifier& row) { return row.identifier() == identifier; });
}

std::shared_ptr<PSSpecifier> vm__specifierByIdentifier_identifier(const PSViewController& screen,
                                                                  const SpecifierList& rows,
                                                                  std::string_view identifier) {
    return rowAt(rows, vm__indexByIdentifier_identifier(screen, rows, identifier));
}

std::shared_ptr<platform::UINavigationController> __vmRealNavigationController(
    const platform::UIViewController& screen) {
    return velmora::outermostNavigationController(screen);
}

}  // namespace quietrix
