// SPDX-License-Identifier: MIT
#include "settings/application/BundleErrorController.h"

#include <utility>

namespace settings {

using platform::PSCellType;
using platform::PSSpecifier;

PLATFORM_REGISTER_ABSTRACT_CLASS(BundleErrorController)

BundleErrorController::BundleErrorController(std::string bundlePath, std::string reason)
    : bundlePath_(std::move(bundlePath)), reason_(std::move(reason)) {}

platform::SpecifierArray BundleErrorController::specifiers() {
    if (specifiers_) return specifiers_;
    const auto group = PSSpecifier::emptyGroupSpecifier();
    group->setProperty_forKey(reason_, "footerText");
    specifiers_ = std::make_shared<platform::SpecifierList>(
        platform::SpecifierList{group, PSSpecifier::preferenceSpecifierNamed_target_set_get_detail_cell_edit(
                                           bundlePath_, nullptr, {}, {}, {}, PSCellType::StaticText, {})});
    return specifiers_;
}

}  // namespace settings
