// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "device/FaultLog.h"
#include "platform/foundation/CalendarSource.h"

namespace device {

/// The calendars in a directory of the host, as synchronising programs leave them:
///
///     ACCOUNT/FOLDER/    a calendar: its .ics files, and "displayname" and "color" if it has any
///     ACCOUNT/FILE.ics   a calendar: its name and colour are properties of the file
///
/// In the order of the paths. A calendar is identified by its path within the directory. It is called what it
/// says, else what its folder or file (without the extension) is called, or its account where a program made
/// that name up; one without a colour gets one that goes with its identifier. No folder is searched for its
/// events, and of a file only the head and the last few bytes are read: one that was cut short is broken.
/// Hidden files and folders, and what is neither a folder nor an .ics file, are passed over; symbolic links
/// are followed. What is broken or cannot be read is left out, with one log line until it changes; a bad
/// colour only counts as none. A directory that does not exist has no calendars, and gives a log line where
/// it is a fault. A name that shows nothing is none; of the others the blanks at both ends do not count.
class CalendarFolders : public platform::CalendarSource {
  public:
    /// What it means that the directory is not there.
    enum class Missing { IsEmpty, IsAFault };

    CalendarFolders(std::filesystem::path directory, Missing missing);

    std::vector<platform::CalendarEntry> calendars() override;

  private:
    struct Description;

    std::vector<std::filesystem::directory_entry> visibleEntries(const std::filesystem::path& directory);
    void appendAccount(const std::filesystem::path& account, std::vector<platform::CalendarEntry>& calendars);
    Description describeFolder(const std::filesystem::path& folder);
    std::optional<Description> describeFile(const std::filesystem::path& file);
    std::optional<std::string> shortText(const std::filesystem::path& file);
    platform::CalendarEntry entry(const std::filesystem::path& path, const Description& description);
    bool isAbove(const std::filesystem::path& folder, const std::filesystem::path& account) const;

    std::filesystem::path directory_;
    Missing missing_;
    FaultLog faults_;
};

}  // namespace device
