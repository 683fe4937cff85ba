// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "platform/preferences/PSListController.h"

namespace settings {

/// What is opened in place of a bundle that cannot be: the bundle's path as a row, the reason beneath it.
class BundleErrorController : public platform::PSListController {
    PLATFORM_CLASS(BundleErrorController, platform::PSListController)

  public:
    /// `reason` is a whole sentence.
    BundleErrorController(std::string bundlePath, std::string reason);

    platform::SpecifierArray specifiers() override;
    const std::string& reason() const { return reason_; }

  private:
    std::string bundlePath_;
    std::string reason_;
};

}  // namespace settings
