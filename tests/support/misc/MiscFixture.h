// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string_view>

#include "platform/foundation/PropertyList.h"
#include "platform/preferences/PSConfirmationSpecifier.h"
#include "shell/base/ProductInfo.h"
#include "support/misc/QuietrixMiscController.h"
#include "tests/doubles/ProfileScreenFixture.h"

namespace quietrix {

/// The miscellaneous screen above another one, on a phone with or without a profiles file.
class MiscFixture : public doubles::PluginScreenFixture<QuietrixMiscController> {
  protected:
    void open() {
        currentYear() = 2026;
        openScreen(doubles::Place::AboveAnother);
    }
    void addProfile() {
        QXProfilesManager::sharedManager()->addProfile_success_failure(QXProfile::defaultProfile(), nullptr,
                                                                       nullptr);
        phone_.drain();
    }
    bool hasProfilesFile() const { return phone_.files->exists(profilesPath); }
    std::shared_ptr<platform::PSConfirmationSpecifier> questionRow(std::string_view identifier,
                                                                   const Where& where = Where::current()) {
        return doubles::required(
            std::dynamic_pointer_cast<platform::PSConfirmationSpecifier>(rowOf(identifier, where)), where);
    }
    /// Taps the row and presses the button of its question.
    void tapAndChoose(std::string_view identifier, std::size_t button,
                      const Where& where = Where::current()) {
        tap(identifier, where);
        doubles::required(alert(), where)->choose(button);
    }
    void confirmReset() { tapAndChoose("resetProfiles", 0); }
    void confirmReport() { tapAndChoose("report", 0); }
    static std::shared_ptr<platform::MFMailComposeViewController> composer() {
        return std::dynamic_pointer_cast<platform::MFMailComposeViewController>(doubles::Phone::top());
    }
};

}  // namespace quietrix
