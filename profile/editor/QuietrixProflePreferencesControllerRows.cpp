// SPDX-License-Identifier: MIT
// The editor's rows, from the top of the screen to its end, and how their cells look. What the rows do is in
// QuietrixProflePreferencesController.cpp.
#include <string_view>
#include <utility>

#include "platform/foundation/Bundle.h"
#include "platform/foundation/Device.h"
#include "platform/uikit/UIDevice.h"
#include "profile/cells/QXEditableTableCell.h"
#include "profile/cells/QXSliderCell.h"
#include "profile/cells/QXSwitchCell.h"
#include "profile/cells/TimeColor.h"
#include "profile/editor/QuietrixProflePreferencesController.h"
#include "profile/model/QXEventManager.h"
#include "shell/base/Localization.h"

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

std::shared_ptr<PSSpecifier> groupRow(std::string_view name, std::string_view footer) {
    const auto row = PSSpecifier::groupSpecifierWithName(localized(name));
    row->setProperty_forKey(localized(footer), "footerText");
    return row;
}

std::shared_ptr<PSSpecifier> namelessGroupRow(std::string_view footer) {
    const auto row = PSSpecifier::emptyGroupSpecifier();
    row->setProperty_forKey(localized(footer), "footerText");
    return row;
}

/// A row that only opens a screen.
std::shared_ptr<PSSpecifier> linkRow(std::string_view name, std::string_view detail) {
    return PSSpecifier::preferenceSpecifierNamed_target_set_get_detail_cell_edit(
        localized(name), nullptr, {}, {}, detail, PSCellType::Link, "");
}

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

void append(SpecifierList& rows, const SpecifierList& more) {
    rows.insert(rows.end(), more.begin(), more.end());
}

}  // namespace

PLATFORM_REGISTER_CLASS(QuietrixProflePreferencesController)

SpecifierArray QuietrixProflePreferencesController::specifiers() {
    if (specifiers_ && !specifiers_->empty()) return specifiers_;
    setProfile(specifier() ? specifier()->userInfo().objectAs<QXProfile>() : nullptr);
    auto rows = std::make_shared<SpecifierList>(SpecifierList{PSSpecifier::emptyGroupSpecifier()});
    append(*rows, *profilesSpecifiers());
    specifiers_ = std::move(rows);
    return specifiers_;
}

SpecifierArray QuietrixProflePreferencesController::profilesSpecifiers() {
    if (profilesSpecifiers_) return profilesSpecifiers_;
    const auto title = valueRow("Title", "title", PSCellType::EditText, "");
    title->setProperty_forKey(profile_ ? Value(profile_->title()) : Value(), "value");
    title->setProperty_forKey(localized("Required"), "placeholder");
    title->setProperty_forKey("words", "autoCaps");
    title->setProperty_forKey(false, "noAutoCorrect");
    title->setProperty_forKey(QXEditableTableCell::staticClass().name(), "cellClass");

    auto rows = std::make_shared<SpecifierList>(
        SpecifierList{title, PSSpecifier::emptyGroupSpecifier(), switchRow("Enable", "enabled", true)});
    if (profile_ && profile_->isEnabled()) append(*rows, profileEnabledSpecifiers());
    profilesSpecifiers_ = std::move(rows);
    return profilesSpecifiers_;
}

SpecifierList QuietrixProflePreferencesController::profileEnabledSpecifiers() {
    SpecifierList rows;
    rows.push_back(groupRow("Schedule", "This profile will be active based on these settings."));
    const auto allDay = switchRow("All Day", "allDay", true);
    allDay->setSetter(method("setAllDayModeEnabled:specifier:",
                             &QuietrixProflePreferencesController::setAllDayModeEnabled_specifier));
    rows.push_back(allDay);
    if (!profile_ || !profile_->isAllDay()) append(rows, activeTimeSpecifiers());

    append(rows, ringerVolumeSpecifiers());
    append(rows, alertSpecifiers());

    rows.push_back(
        namelessGroupRow("Turning on will enable Apple's 'Do not Disturb' option on your iDevice."));
    rows.push_back(switchRow("Do not Disturb", "dnDEnabled", false));

    if (hasStatusBarLibrary()) {
        rows.push_back(
            namelessGroupRow("Turning on will show Quietrix Go's custom icon on your iDevice's statusbar. "
                             "This will quickly let "
                             "you know if there is a profile activated."));
        const auto statusBar = switchRow("Show on StatusBar", "showOnStatusBar", false);
        statusBar->setProperty_forKey(
            UIImage::imageNamed_inBundle("StatusBar", platform::Bundle::bundleForClass(getClass())),
            "iconImage");
        rows.push_back(statusBar);
    }

    rows.push_back(groupRow("WiFi Networks",
                            "Select WiFi network(s) on which you want to apply this profile automatically. "
                            "Quietrix Go ignores all the calendar events if this device is connected to "
                            "these networks."));
    const auto networks = linkRow("WiFi Networks", "QuietrixWifiController");
    networks->setIdentifier("wifiNetworks");
    networks->setUserInfo(Dictionary{{"profile", profile_}});
    rows.push_back(networks);

    rows.push_back(groupRow("Calendars",
                            "Select Calendars which you want to apply this profile.\n\nNote: If you do not "
                            "select any calendar, by default this profile applies to all events on your "
                            "Calendar."));
    const auto calendars =
        valueRow("Calendar", "calendarIdentifiers", PSCellType::Link, "QuietrixCalendarsController");
    calendars->setUserInfo(Dictionary{{"profile", profile_},
                                      {"calendars", QXEventManager::sharedManager()->groupedCalendars()}});
    rows.push_back(calendars);
    return rows;
}

SpecifierList QuietrixProflePreferencesController::activeTimeSpecifiers() {
    const auto row = linkRow("Active Hours", "QXDateRangeController");
    row->setProperty_forKey(activeHoursCellClass, "cellClass");
    row->setProperty_forKey(activeHoursHeight, "height");
    row->setUserInfo(profile_);
    return {row};
}

SpecifierList QuietrixProflePreferencesController::ringerVolumeSpecifiers() {
    return {PSSpecifier::groupSpecifierWithName(localized("Ringer Volume & Vibrate")),
            volumeRow("Playback Volume", "playBackVolume"), volumeRow("Ringer Volume", "ringerVolume"),
            switchRow("Vibrate", "vibrate", true)};
}

SpecifierList QuietrixProflePreferencesController::alertSpecifiers() {
    SpecifierList rows{groupRow("Alerts",
                                "Turn on to get notified before and after applying this profile to calendar "
                                "events."),
                       switchRow("Ring Alert", "playAlert", true)};
    if (profile_ && profile_->isEnabled() && profile_->isPlayAlert()) {
        const auto tone =
            valueRow("Alert Tone", "alertToneIdentifier", PSCellType::Link, "QuietrixAlertToneController");
        tone->setUserInfo(Dictionary{{"profile", profile_}});
        rows.push_back(tone);
    }
    rows.push_back(switchRow("Vibrate Alert", "vibrateAlert", true));
    rows.push_back(switchRow("Wake Up Screen", "wakeUpScreen", true));
    return rows;
}

QuietrixProflePreferencesController::Row QuietrixProflePreferencesController::valueRow(
    std::string_view name, std::string_view identifier, PSCellType kind, std::string_view detail) {
    const auto row = PSSpecifier::preferenceSpecifierNamed_target_set_get_detail_cell_edit(
        localized(name), shared(this),
        method("setPreferenceValue:specifier:",
               &QuietrixProflePreferencesController::setPreferenceValue_specifier),
        method("readPreferenceValue:", &QuietrixProflePreferencesController::readPreferenceValue), detail,
        kind, "");
    row->setIdentifier(std::string(identifier));
    return row;
}

QuietrixProflePreferencesController::Row QuietrixProflePreferencesController::switchRow(
    std::string_view name, std::string_view identifier, bool defaultValue) {
    const auto row = valueRow(name, identifier, PSCellType::Switch, "");
    row->setProperty_forKey(defaultValue, "default");
    row->setProperty_forKey(QXSwitchCell::staticClass().name(), "cellClass");
    return row;
}

QuietrixProflePreferencesController::Row QuietrixProflePreferencesController::volumeRow(
    std::string_view name, std::string_view identifier) {
    const auto row = valueRow(name, identifier, PSCellType::Slider, "");
    row->setProperty_forKey(0.0, "min");
    row->setProperty_forKey(1.0, "max");
    row->setProperty_forKey(QXSliderCell::staticClass().name(), "cellClass");
    row->setProperty_forKey(
        speakerImage("/System/Library/PrivateFrameworks/PreferencesUI.framework/SpeakerMute%@"), "leftImage");
    row->setProperty_forKey(
        speakerImage("/System/Library/PrivateFrameworks/PreferencesUI.framework/SpeakerMax%@"), "rightImage");
    return row;
}

// Cells

std::shared_ptr<platform::PSTableCell> QuietrixProflePreferencesController::tableView_cellForRowAtIndexPath(
    const Table& table, IndexPath path) {
    auto cell = ProductScreen::tableView_cellForRowAtIndexPath(table, path);
    const auto row = specifierAtIndex(indexForRow_inGroup(path.row, path.section));
    if (!cell || !row) return cell;
    const auto& detail = cell->detailTextLabel();
    const std::string identifier = row->identifier().value_or("");
    if (identifier == "startTime" || identifier == "endTime") {
        detail->setTextColor(timeColor());
    } else if (identifier == "alertToneIdentifier") {
        detail->setTextColor(UIColor::lightGrayColor());
        detail->setText(toneName(profile_.get()));
    }
    return cell;
}

double QuietrixProflePreferencesController::tableView_estimatedHeightForRowAtIndexPath(const Table& table,
                                                                                       IndexPath path) {
    const auto row = specifierAtIndex(indexForRow_inGroup(path.row, path.section));
    if (row && row->propertyForKey("cellClass") == Value(QXSliderCell::staticClass().name()))
        return QXSliderCell::defaultCellHeight();
    return ProductScreen::tableView_estimatedHeightForRowAtIndexPath(table, path);
}

}  // namespace quietrix
