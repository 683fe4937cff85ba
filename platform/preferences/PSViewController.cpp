// SPDX-License-Identifier: MIT
#include "platform/preferences/PSViewController.h"

#include <utility>

namespace platform {

PLATFORM_REGISTER_CLASS(PSViewController)

void PSViewController::setSpecifier(std::shared_ptr<PSSpecifier> specifier) {
    specifier_ = std::move(specifier);
    if (specifier_ && specifier_->name()) setTitle(specifier_->name());
}

}  // namespace platform
