// SPDX-License-Identifier: MIT
#include "RingerRows.h"
#include "platform/foundation/Bundle.h"
#include "platform/preferences/PSListController.h"

namespace ringer {

/// Tells the version. No row opens it: the Info list names it as a linked screen of the first one. Nobody
/// needs its header either, as screens are found by their names.
class RingerAboutController : public platform::PSListController {
    PLATFORM_CLASS(RingerAboutController, platform::PSListController)

  public:
    platform::SpecifierArray specifiers() override;
};

PLATFORM_REGISTER_CLASS(RingerAboutController)

platform::SpecifierArray RingerAboutController::specifiers() {
    if (specifiers_) return specifiers_;
    const auto bundle = platform::Bundle::bundleForClass(getClass());
    const auto& info = bundle->infoDictionary();
    const auto version = info.find("CFBundleShortVersionString");
    specifiers_ = std::make_shared<platform::SpecifierList>(platform::SpecifierList{makeRow(
        {.name = textWith("Version %@", version == info.end() ? platform::Value("?") : version->second),
         .identifier = "version"})});
    return specifiers_;
}

}  // namespace ringer
