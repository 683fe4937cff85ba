// SPDX-License-Identifier: MIT
// The editor's rows, from the top of the screen to its end, and how their cells look. What the rows do is in
// QuietrixProflePreferencesController.cpp.
#include <string_view>
#include <utility>

#include "platform/foundation/Device.h"
#include "platform/uikit/UIDevice.h"
#include "profile/cells/EditableTimeColor.h"
#include "profile/cells/QXEditableTableCell.h"
#include "profile/cells/QXSliderCell.h"
#include "profile/cells/QXSwitchCell.h"
#include "profile/editor/QuietrixProflePreferencesController.h"
#include "profile/model/QXEventManager.h"
#include "shell/base/BundleImage.h"
#include "shell/base/Localization.h"
#include "shell/chrome/EditedProfile.h"

namespace quietrix {

using platform::Dictionary;
using platform::IndexPath;
using platform::method;
using platform::PSCellType;
using platform::PSSpecifier;
using platform::SpecifierArray;
using platform::SpecifierList;
using platform::UIColor;
using platform::UIImage;
using platform::Value;

namespace {

constexpr const char* activeHoursCellClass = "QXDateRangeCell";
constexpr double activeHoursHeight = 64.0;
constexpr const char* statusBarLibraryPath = "/Library/MobileSubstrate/DynamicLibraries/libstatusbar.dylib";

/// The system's own artwork, at the main screen's scale.
std::shared_ptr<UIImage> speakerImage(std::string_view pathFormat) {
    const bool isFine = platform::UIScreen::mainScreen().scale() > 2.0;
    return UIImage::imageWithContentsOfFile(stringWithFormat(pathFormat, {isFine ? "@3x.png" : "@2x.png"}));
}

/// Asked anew for each build of the rows: the library may be installed while the screen is open.
bool hasStatusBarLibrary() {
    const auto& libraries = platform::Device::current().libraries;
    return libraries && libraries->canOpen(statusBarLibraryPath);
}

/// What follows the last colon of the tone's identifier; "None" for a profile without a tone.
std::string toneName(const QXProfile* profile) {
    if (profile == nullptr || !profile->alertToneIdentifier()) return localized("None");
    const std::string& identifier = *profile->alertToneIdentifier();
    // Without a colon this is the whole.
    return localized(std::string_view(identifier).substr(identifier.rfind(':') + 1));
}

}  // namespace

PLATFORM_REGISTER_CLASS(QuietrixProflePreferencesController)

// Rows

SpecifierArray QuietrixProflePreferencesController::specifiers() {
    if (specifiers_ && !specifiers_->empty()) return specifiers_;
    setProfile(profileOfRow(specifier()));
    specifiers_ = std::make_shared<SpecifierList>(SpecifierList{PSSpecifier::emptyGroupSpecifier()});
    append(*specifiers_, *profilesSpecifiers());
    return specifiers_;
}

SpecifierArray QuietrixProflePreferencesController::profilesSpecifiers() {
    if (profilesSpecifiers_) return profilesSpecifiers_;
    profilesSpecifiers_ = std::make_shared<SpecifierList>(SpecifierList{
        titleRow(), PSSpecifier::emptyGroupSpecifier(), switchRow(localized("Enable"), "enabled", true)});
    if (profile_ && profile_->isEnabled()) append(*profilesSpecifiers_, profileEnabledSpecifiers());
    return profilesSpecifiers_;
}

QuietrixProflePreferencesController::Row QuietrixProflePreferencesController::titleRow() {
    return valueRow({.name = localized("Title"),
                     .cell = PSCellType::EditText,
                     .identifier = "title",
                     .properties = {{"value", profile_ ? Value(profile_->title()) : Value()},
                                    {"placeholder", localized("Required")},
                                    {"autoCaps", "words"},
                                    {"noAutoCorrect", false},
                                    {"cellClass", QXEditableTableCell::staticClass().name()}}});
}

SpecifierList QuietrixProflePreferencesController::profileEnabledSpecifiers() {
    SpecifierList rows = scheduleSpecifiers();
    if (!profile_ || !profile_->isAllDay()) append(rows, activeTimeSpecifiers());
    append(rows, ringerVolumeSpecifiers());
    append(rows, alertSpecifiers());
    append(rows, doNotDisturbSpecifiers());
    if (hasStatusBarLibrary()) append(rows, statusBarSpecifiers());
    append(rows, networksSpecifiers());
    append(rows, calendarsSpecifiers());
    return rows;
}

SpecifierList QuietrixProflePreferencesController::scheduleSpecifiers() {
    const auto allDay = switchRow(localized("All Day"), "allDay", true);
    allDay->setSetter(method("setAllDayModeEnabled:specifier:",
                             &QuietrixProflePreferencesController::setAllDayModeEnabled_specifier));
    return {
        makeGroup(localized("Schedule"), localized("This profile will be active based on these settings.")),
        allDay};
}

SpecifierList QuietrixProflePreferencesController::activeTimeSpecifiers() {
    return {makeRow({.name = localized("Active Hours"),
                     .detail = "QXDateRangeController",
                     .userInfo = profile_,
                     .properties = {{"cellClass", activeHoursCellClass}, {"height", activeHoursHeight}}})};
}

SpecifierList QuietrixProflePreferencesController::ringerVolumeSpecifiers() {
    return {PSSpecifier::groupSpecifierWithName(localized("Ringer Volume & Vibrate")),
            volumeRow(localized("Playback Volume"), "playBackVolume"),
            volumeRow(localized("Ringer Volume"), "ringerVolume"),
            switchRow(localized("Vibrate"), "vibrate", true)};
}

SpecifierList QuietrixProflePreferencesController::alertSpecifiers() {
    SpecifierList rows{makeGroup(localized("Alerts"),
                                 localized("Turn on to get notified before and after applying this profile "
                                           "to calendar events.")),
                       switchRow(localized("Ring Alert"), "playAlert", true)};
    if (profile_ && profile_->isEnabled() && profile_->isPlayAlert()) {
        rows.push_back(valueRow({.name = localized("Alert Tone"),
                                 .identifier = "alertToneIdentifier",
                                 .detail = "QuietrixAlertToneController",
                                 .userInfo = Dictionary{{"profile", profile_}}}));
    }
    rows.push_back(switchRow(localized("Vibrate Alert"), "vibrateAlert", true));
    rows.push_back(switchRow(localized("Wake Up Screen"), "wakeUpScreen", true));
    return rows;
}

SpecifierList QuietrixProflePreferencesController::doNotDisturbSpecifiers() {
    return {makeNamelessGroup(localized("Turning on will enable Apple's 'Do not Disturb' option on your "
                                        "iDevice.")),
            switchRow(localized("Do not Disturb"), "dnDEnabled", false)};
}

SpecifierList QuietrixProflePreferencesController::statusBarSpecifiers() {
    const auto statusBar = switchRow(localized("Show on StatusBar"), "showOnStatusBar", false);
    statusBar->setProperty_forKey(bundleImage(getClass(), "StatusBar"), "iconImage");
    return {makeNamelessGroup(localized("Turning on will show Quietrix Go's custom icon on your iDevice's "
                                        "statusbar. This will quickly let you know if there is a profile "
                                        "activated.")),
            statusBar};
}

SpecifierList QuietrixProflePreferencesController::networksSpecifiers() {
    return {makeGroup(localized("WiFi Networks"),
                      localized("Select WiFi network(s) on which you want to apply this profile "
                                "automatically. Quietrix Go ignores all the calendar events if this device "
                                "is connected to these networks.")),
            makeRow({.name = localized("WiFi Networks"),
                     .identifier = "wifiNetworks",
                     .detail = "QuietrixWifiController",
                     .userInfo = Dictionary{{"profile", profile_}}})};
}

SpecifierList QuietrixProflePreferencesController::calendarsSpecifiers() {
    return {makeGroup(localized("Calendars"),
                      localized("Select Calendars which you want to apply this profile.\n\nNote: If you do "
                                "not select any calendar, by default this profile applies to all events on "
                                "your Calendar.")),
            valueRow({.name = localized("Calendar"),
                      .identifier = "calendarIdentifiers",
                      .detail = "QuietrixCalendarsController",
                      .userInfo =
                          Dictionary{{"profile", profile_},
                                     {"calendars", QXEventManager::sharedManager()->groupedCalendars()}}})};
}

QuietrixProflePreferencesController::Row QuietrixProflePreferencesController::valueRow(RowParts parts) {
    parts.target = shared(this);
    parts.set = method("setPreferenceValue:specifier:",
                       &QuietrixProflePreferencesController::setPreferenceValue_specifier);
    parts.get = method("readPreferenceValue:", &QuietrixProflePreferencesController::readPreferenceValue);
    return makeRow(std::move(parts));
}

QuietrixProflePreferencesController::Row QuietrixProflePreferencesController::switchRow(
    std::string name, const char* identifier, bool defaultValue) {
    return valueRow(
        {.name = std::move(name),
         .cell = PSCellType::Switch,
         .identifier = identifier,
         .properties = {{"default", defaultValue}, {"cellClass", QXSwitchCell::staticClass().name()}}});
}

QuietrixProflePreferencesController::Row QuietrixProflePreferencesController::volumeRow(
    std::string name, const char* identifier) {
    constexpr const char* leftPath =
        "/System/Library/PrivateFrameworks/PreferencesUI.framework/SpeakerMute%@";
    constexpr const char* rightPath =
        "/System/Library/PrivateFrameworks/PreferencesUI.framework/SpeakerMax%@";
    return valueRow({.name = std::move(name),
                     .cell = PSCellType::Slider,
                     .identifier = identifier,
                     .properties = {{"min", 0.0},
                                    {"max", 1.0},
                                    {"cellClass", QXSliderCell::staticClass().name()},
                                    {"leftImage", speakerImage(leftPath)},
                                    {"rightImage", speakerImage(rightPath)}}});
}

// Cells

std::shared_ptr<platform::PSTableCell> QuietrixProflePreferencesController::tableView_cellForRowAtIndexPath(
    const Table& table, IndexPath path) {
    auto cell = ProductScreen::tableView_cellForRowAtIndexPath(table, path);
    const auto row = specifierAtIndexPath(path);
    if (!cell || !row) return cell;
    const auto& detail = cell->detailTextLabel();
    const std::string identifier = row->identifier().value_or("");
    if (identifier == "startTime" || identifier == "endTime") {
        detail->setTextColor(editableTimeColor());
    } else if (identifier == "alertToneIdentifier") {
        detail->setTextColor(UIColor::lightGrayColor());
        detail->setText(toneName(profile_.get()));
    }
    return cell;
}

double QuietrixProflePreferencesController::tableView_estimatedHeightForRowAtIndexPath(const Table& table,
                                                                                       IndexPath path) {
    const auto row = specifierAtIndexPath(path);
    if (row && row->propertyForKey("cellClass") == Value(QXSliderCell::staticClass().name()))
        return QXSliderCell::defaultCellHeight();
    return ProductScreen::tableView_estimatedHeightForRowAtIndexPath(table, path);
}

}  // namespace quietrix
