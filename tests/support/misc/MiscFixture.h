// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "platform/foundation/PropertyList.h"
#include "platform/preferences/PSConfirmationSpecifier.h"
#include "platform/uikit/UIApplication.h"
#include "profile/model/QXProfilesManager.h"
#include "shell/base/ProductInfo.h"
#include "support/misc/QuietrixMiscController.h"
#include "tests/shell/phone/PluginPhone.h"

namespace quietrix {

/// The miscellaneous screen above another one, on a phone with or without a profiles file.
class MiscFixture : public testing::Test {
  protected:
    void open() {
        currentYear() = 2026;
        screen_ = std::make_shared<QuietrixMiscController>();
        navigation_ = phone_.show(std::make_shared<platform::PSViewController>());
        navigation_->pushViewController_animated(screen_, false);
        phone_.drain();
        phone_.takeEvents();
    }
    void addProfile() {
        QXProfilesManager::sharedManager()->addProfile_success_failure(QXProfile::defaultProfile(), nullptr,
                                                                       nullptr);
        phone_.drain();
    }
    bool hasProfilesFile() const { return phone_.files->exists(profilesPath); }
    std::shared_ptr<platform::PSConfirmationSpecifier> row(std::int64_t index) {
        return std::dynamic_pointer_cast<platform::PSConfirmationSpecifier>(screen_->specifierAtIndex(index));
    }
    /// Taps the row and presses the button of its question.
    void tapAndChoose(std::int64_t index, std::size_t button) {
        screen_->tableView_didSelectRowAtIndexPath(screen_->table(), *screen_->indexPathForIndex(index));
        ASSERT_NE(nullptr, alert());
        alert()->choose(button);
    }
    void confirmReset() { tapAndChoose(1, 0); }
    void confirmReport() { tapAndChoose(3, 0); }
    static std::shared_ptr<platform::UIAlertController> alert() { return doubles::shownAlert(); }
    static std::shared_ptr<platform::MFMailComposeViewController> composer() {
        return std::dynamic_pointer_cast<platform::MFMailComposeViewController>(
            platform::UIApplication::sharedApplication().topmostPresented());
    }
    std::string footer(std::int64_t index) {
        return screen_->specifierAtIndex(index)->propertyForKey("footerText").stringOr();
    }

    doubles::PluginPhone phone_;
    std::shared_ptr<QuietrixMiscController> screen_;
    std::shared_ptr<platform::UINavigationController> navigation_;
};

}  // namespace quietrix
