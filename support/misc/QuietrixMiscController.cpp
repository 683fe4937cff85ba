// SPDX-License-Identifier: MIT
// The rows and the reset; the problem report is in QuietrixMiscControllerReport.cpp.
#include "support/misc/QuietrixMiscController.h"

#include <utility>

#include "platform/foundation/FileManager.h"
#include "platform/foundation/LogSink.h"
#include "platform/foundation/PropertyList.h"
#include "platform/foundation/RunLoop.h"
#include "profile/model/ProfileHistory.h"
#include "profile/model/ProfilesPath.h"
#include "shell/base/BundleImage.h"
#include "shell/base/Localization.h"
#include "shell/base/ProductInfo.h"
#include "shell/base/Rows.h"
#include "shell/chrome/CopyRight.h"
#include "velmora/VMUtils.h"

namespace quietrix {

using platform::FileManager;
using platform::method;
using platform::PSConfirmationSpecifier;
using platform::PSSpecifier;
using platform::SpecifierArray;
using platform::SpecifierList;
using velmora::VMUtils;

PLATFORM_REGISTER_CLASS(QuietrixMiscController)

namespace {

constexpr const char* systemShell = "SpringBoard";
/// So long the progress alert can be read before the system shell takes it away.
constexpr double resetDelay = 2.0;
/// The log lines name the place by numbers of their own, which support knows them by.
constexpr int deletingLine = 1500;
constexpr int clearingLine = 1508;

void logResetError(int line, const std::string& what) {
    platform::log("com.velmora.Quietrix: Error => -[QuietrixMiscController resetProfilesInfo:], [Line " +
                  std::to_string(line) + "], " + what);
}

}  // namespace

// Rows

SpecifierArray QuietrixMiscController::specifiers() {
    if (!specifiers_) specifiers_ = std::make_shared<SpecifierList>(*mainSettingsSpecifiers());
    return specifiers_;
}

const SpecifierArray& QuietrixMiscController::mainSettingsSpecifiers() {
    if (mainSettingsSpecifiers_) return mainSettingsSpecifiers_;
    const auto resetGroup =
        makeGroup(localized("Reset Profiles"),
                  "If there is any problem with configured profiles, use this option to reset all profiles.");

    const auto reset =
        buttonRow(localized("Reset Profiles"), "resetProfiles", Destructive::Yes,
                  method("showActivityIndicator:", &QuietrixMiscController::showActivityIndicator));
    reset->setOkButton("OK");
    reset->setPrompt("Are you sure you want to continue? Your device will repsring once done.");
    reset->setTitle("Continue");

    const auto contactGroup = makeGroup(localized("Contact Velmora"), copyRightNotice(currentYear()));
    contactGroup->setIdentifier(std::string(copyRightIdentifier));

    const auto report = buttonRow(localized("Report Problem"), "report", Destructive::No,
                                  method("emailLogFile:", &QuietrixMiscController::emailLogFile));
    report->setProperty_forKey(bundleImage(getClass(), "email"), "iconImage");
    report->setOkButton("Send Now");
    report->setPrompt("Are you sure you want to share log file with Velmora Support Team?");
    report->setTitle("Send Now");

    mainSettingsSpecifiers_ =
        std::make_shared<SpecifierList>(SpecifierList{resetGroup, reset, contactGroup, report});
    return mainSettingsSpecifiers_;
}

std::shared_ptr<PSConfirmationSpecifier> QuietrixMiscController::buttonRow(std::string_view name,
                                                                           const char* identifier,
                                                                           Destructive destructive,
                                                                           PSSpecifier::Action action) {
    const auto row = PSConfirmationSpecifier::preferenceSpecifierNamed_target_set_get_detail_cell_edit(
        name, shared(this), {}, {}, "", platform::PSCellType::Button, "");
    row->setIdentifier(identifier);
    row->setProperty_forKey(destructive == Destructive::Yes, "isDestructive");
    row->setCancelButton("Cancel");
    row->setButtonAction(std::move(action));
    return row;
}

// The reset

void QuietrixMiscController::showActivityIndicator(const Row& specifier) {
    // What the host application has no word for, or another one, is not reset by mistake.
    if (specifier->name() != localizedInMainBundle("Reset Profiles")) return;
    activityAlert_ = std::make_shared<velmora::VMActivityAlertView>(
        localized("Resetting"), localized("Your device will be respring once it is done."), nullptr,
        std::nullopt, std::vector<std::string>());
    activityAlert_->show();
    platform::RunLoop::main().performAfterDelay(resetDelay,
                                                [self = shared(this)] { self->resetProfiles(nullptr); });
}

void QuietrixMiscController::resetProfiles(const std::shared_ptr<platform::Object>&) {
    const bool done = resetProfilesInfo(true);
    if (activityAlert_) activityAlert_->close();
    if (done) {
        VMUtils::killProcessByName(systemShell);
    } else {
        showError(localizedInMainBundle("Unable to reset the profiles. Please try again after some time."));
    }
}

bool QuietrixMiscController::resetProfilesInfo(bool shouldDelete) {
    return shouldDelete ? deleteProfilesFile() : clearProfilesFile();
}

bool QuietrixMiscController::deleteProfilesFile() {
    auto& files = FileManager::defaultManager();
    if (!files.fileExistsAtPath(profilesPath)) return false;
    const auto removed = ProfileHistory::removeProfilesFile();
    if (!removed) {
        logResetError(deletingLine, "Error while deleting the configuration file. Error: " +
                                        removed.error().localizedDescription);
    }
    return removed.has_value();
}

bool QuietrixMiscController::clearProfilesFile() {
    auto& files = FileManager::defaultManager();
    const auto data = files.contentsAtPath(profilesPath);
    if (!data) return false;
    const auto list = platform::PropertyListSerialization::propertyListWithData(*data);
    if (!list || list->dictionary() == nullptr) return false;
    ProfileHistory::keepOrLog();
    const auto cleared = platform::PropertyListSerialization::dataWithPropertyList(
        platform::Dictionary(), platform::PropertyListFormat::XML);
    const bool written =
        cleared && files.writeData_toFile(*cleared, profilesPath, platform::Write::Atomically).has_value();
    // Support reads this line as the mark of a clearing that took place.
    if (written) logResetError(clearingLine, "Error while resettings the configuration file.");
    return written;
}

void QuietrixMiscController::showMessage_withMessage(std::string_view /*title*/, const std::string& message) {
    const auto alert = std::make_shared<platform::UIAlertView>(
        VMUtils::localizedLabelFromUIKit("Error"), message, nullptr,
        VMUtils::localizedLabelFromUIKit("Close"), std::vector<std::string>());
    alert->show();
}

void QuietrixMiscController::showError(const std::string& message) {
    showMessage_withMessage(localized("Error"), message);
}

}  // namespace quietrix
