// SPDX-License-Identifier: MIT
// The editor's rows as they are written down, from the top of the screen to its end, without the copyright
// row.
#pragma once

#include <sstream>
#include <string>
#include <vector>

namespace quietrix {

/// name | kind | identifier | set | get | detail | cell class | properties | user info
inline constexpr const char* writtenRows = R"(
- | 0 |  |  |  |  |  |  | nil
Title | 8 | title | setPreferenceValue:specifier: | readPreferenceValue: |  | QXEditableTableCell | autoCaps=words noAutoCorrect=0 placeholder=Required value=Work | nil
- | 0 |  |  |  |  |  |  | nil
Enable | 6 | enabled | setPreferenceValue:specifier: | readPreferenceValue: |  | QXSwitchCell | default=1 | nil
Schedule | 0 |  |  |  |  |  | footerText=This profile will be active based on these settings. | nil
All Day | 6 | allDay | setAllDayModeEnabled:specifier: | readPreferenceValue: |  | QXSwitchCell | default=1 | nil
Active Hours | 1 |  |  |  | QXDateRangeController | QXDateRangeCell | height=64 | QXProfile
Ringer Volume & Vibrate | 0 |  |  |  |  |  |  | nil
Playback Volume | 5 | playBackVolume | setPreferenceValue:specifier: | readPreferenceValue: |  | QXSliderCell | leftImage=SpeakerMute@2x max=1 min=0 rightImage=SpeakerMax@2x | nil
Ringer Volume | 5 | ringerVolume | setPreferenceValue:specifier: | readPreferenceValue: |  | QXSliderCell | leftImage=SpeakerMute@2x max=1 min=0 rightImage=SpeakerMax@2x | nil
Vibrate | 6 | vibrate | setPreferenceValue:specifier: | readPreferenceValue: |  | QXSwitchCell | default=1 | nil
Alerts | 0 |  |  |  |  |  | footerText=Turn on to get notified before and after applying this profile to calendar events. | nil
Ring Alert | 6 | playAlert | setPreferenceValue:specifier: | readPreferenceValue: |  | QXSwitchCell | default=1 | nil
Alert Tone | 1 | alertToneIdentifier | setPreferenceValue:specifier: | readPreferenceValue: | QuietrixAlertToneController |  |  | profile
Vibrate Alert | 6 | vibrateAlert | setPreferenceValue:specifier: | readPreferenceValue: |  | QXSwitchCell | default=1 | nil
Wake Up Screen | 6 | wakeUpScreen | setPreferenceValue:specifier: | readPreferenceValue: |  | QXSwitchCell | default=1 | nil
- | 0 |  |  |  |  |  | footerText=Turning on will enable Apple's 'Do not Disturb' option on your iDevice. | nil
Do not Disturb | 6 | dnDEnabled | setPreferenceValue:specifier: | readPreferenceValue: |  | QXSwitchCell | default=0 | nil
- | 0 |  |  |  |  |  | footerText=Turning on will show Quietrix Go's custom icon on your iDevice's statusbar. This will quickly let you know if there is a profile activated. | nil
Show on StatusBar | 6 | showOnStatusBar | setPreferenceValue:specifier: | readPreferenceValue: |  | QXSwitchCell | default=0 iconImage=StatusBar | nil
WiFi Networks | 0 |  |  |  |  |  | footerText=Select WiFi network(s) on which you want to apply this profile automatically. Quietrix Go ignores all the calendar events if this device is connected to these networks. | nil
WiFi Networks | 1 | wifiNetworks |  |  | QuietrixWifiController |  |  | profile
Calendars | 0 |  |  |  |  |  | footerText=Select Calendars which you want to apply this profile.//Note: If you do not select any calendar, by default this profile applies to all events on your Calendar. | nil
Calendar | 1 | calendarIdentifiers | setPreferenceValue:specifier: | readPreferenceValue: | QuietrixCalendarsController |  |  | calendars profile
)";
/// So many of them stand there whatever the profile is.
inline constexpr std::size_t alwaysThere = 4;

/// A line a row.
inline std::vector<std::string> written() {
    std::vector<std::string> lines;
    std::istringstream stream(writtenRows);
    for (std::string line; std::getline(stream, line);)
        if (!line.empty()) lines.push_back(line);
    return lines;
}

/// The names of what only an enabled profile has, from the first row to the last; "-" for none.
inline std::vector<std::string> namesOfEnabledRows() {
    std::vector<std::string> names;
    for (const std::string& line : written()) names.push_back(line.substr(0, line.find(" |")));
    names.erase(names.begin(), names.begin() + alwaysThere);
    return names;
}

}  // namespace quietrix
