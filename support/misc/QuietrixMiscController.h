// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/messageui/MFMailComposeViewController.h"
#include "platform/preferences/PSConfirmationSpecifier.h"
#include "platform/preferences/PSListController.h"
#include "shell/chrome/ChromedScreen.h"
#include "velmora/VMActivityAlertView.h"

namespace quietrix {

/// The screen "Miscellaneous": resets all profiles, and reports a problem to the maker by mail. Main thread.
class QuietrixMiscController : public ChromedScreen<platform::PSListController>,
                               public platform::MFMailComposeViewControllerDelegate {
    PLATFORM_CLASS(QuietrixMiscController, platform::PSListController)

  public:
    using Row = std::shared_ptr<platform::PSSpecifier>;

    platform::SpecifierArray specifiers() override;
    /// Built once, and kept as long as the screen.
    const platform::SpecifierArray& mainSettingsSpecifiers();

    // The reset.

    /// Puts up the progress alert and resets two seconds later. Does nothing when the row's name is not the
    /// host application's word for it.
    void showActivityIndicator(const Row& specifier);
    void resetProfiles(const std::shared_ptr<platform::Object>& object);
    /// Deletes the profiles file, or clears it; says whether it could. A file that is not there cannot be
    /// deleted.
    bool resetProfilesInfo(bool shouldDelete);
    /// The progress alert of the last reset; null before the first.
    const std::shared_ptr<velmora::VMActivityAlertView>& activityAlert() const { return activityAlert_; }

    /// The alert's title is always the platform's own word for an error, whatever title is given.
    void showMessage_withMessage(std::string_view title, const std::string& message);
    void showError(const std::string& message);

    // The problem report.

    void emailLogFile(const Row& specifier);
    void mailComposeController_didFinishWithResult_error(
        const std::shared_ptr<platform::MFMailComposeViewController>& composer,
        platform::MFMailComposeResult result, const std::optional<platform::Error>& error) override;

  private:
    enum class Destructive { No, Yes };
    /// A button that asks before it acts; what it asks is still to be set.
    std::shared_ptr<platform::PSConfirmationSpecifier> buttonRow(std::string_view name,
                                                                 const char* identifier,
                                                                 Destructive destructive,
                                                                 platform::PSSpecifier::Action action);
    bool deleteProfilesFile();
    bool clearProfilesFile();

    platform::SpecifierArray mainSettingsSpecifiers_;
    std::shared_ptr<velmora::VMActivityAlertView> activityAlert_;
};

}  // namespace quietrix
