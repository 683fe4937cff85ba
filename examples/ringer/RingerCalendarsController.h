// SPDX-License-Identifier: MIT
#pragma once

#include "platform/preferences/PSListController.h"

namespace ringer {

/// A switch for each of the phone's calendars; no bell rings during events of those that are on. The rows
/// carry their calendars as user info, by which the application sees that there are any.
class RingerCalendarsController : public platform::PSListController {
    PLATFORM_CLASS(RingerCalendarsController, platform::PSListController)

  public:
    platform::SpecifierArray specifiers() override;

    void setSilent_specifier(const platform::Value& value,
                             const std::shared_ptr<platform::PSSpecifier>& specifier);
    platform::Value isSilent(const std::shared_ptr<platform::PSSpecifier>& specifier);
};

}  // namespace ringer
