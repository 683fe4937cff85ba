// SPDX-License-Identifier: MIT
#include "device/calendars/CalendarFolders.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <string_view>
#include <system_error>
#include <utility>

#include "device/Descriptor.h"
#include "device/EscapedText.h"
#include "device/FileHead.h"
#include "device/HostFile.h"
#include "device/calendars/CalendarHead.h"
#include "device/calendars/ColourText.h"
#include "platform/foundation/Hexadecimal.h"
#include "platform/foundation/Unicode.h"

namespace device {

namespace fs = std::filesystem;

/// What a calendar says of itself, as it stands there, and where it says so.
struct CalendarFolders::Description {
    std::string fallbackName;
    std::optional<std::string> name;
    std::optional<std::string> colour;
    fs::path colourFile;
};

namespace {

/// Of the files "displayname" and "color"; what is longer is no name.
constexpr std::size_t maximumShortText = 4096;

/// One line for a row: control characters and line breaks become blanks. Empty where nothing would show.
std::string titleFrom(std::string_view bytes) {
    bytes = platform::withoutOuterBlanks(bytes);
    std::string title;
    bool shows = false;
    for (std::size_t at = 0; at < bytes.size();) {
        const auto character = platform::decodeUTF8(bytes, at);
        const std::size_t length = character ? character->length : 1;
        shows = shows || !character || !platform::isInvisible(character->codePoint);
        title += character && platform::isControlOrLineBreak(character->codePoint) ? " "
                                                                                   : bytes.substr(at, length);
        at += length;
    }
    return shows ? escapedText(title) : std::string();
}

/// Colours that can be told apart, for calendars that have none of their own.
std::uint32_t colourFor(std::string_view identifier) {
    constexpr std::array<std::uint32_t, 8> palette{0x1E88E5, 0x43A047, 0xE53935, 0xFB8C00,
                                                   0x8E24AA, 0x00897B, 0x6D4C41, 0xD81B60};
    // The same in every process and with every library, unlike std::hash.
    std::uint32_t hash = 2166136261U;
    for (const char c : identifier) hash = (hash ^ static_cast<unsigned char>(c)) * 16777619U;
    return palette[hash % palette.size()];
}

/// Whether a program made the name up for itself: a UUID, or 16 or more hexadecimal digits.
bool isMadeUpName(std::string_view name) {
    constexpr std::string_view shape = "XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX";
    constexpr std::size_t fewestDigits = 16;
    const bool isUUID = std::ranges::equal(name, shape, [&](char c, char place) {
        return place == '-' ? c == '-' : platform::isHexadecimalDigit(c);
    });
    return isUUID || (name.size() >= fewestDigits && std::ranges::all_of(name, platform::isHexadecimalDigit));
}

/// So many bytes at most from where the file ends now; fewer when it shrinks meanwhile.
host::Outcome<std::string> readTail(const std::string& path, std::size_t limit) {
    const Descriptor file(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    const off_t size = file ? lseek(file.get(), 0, SEEK_END) : -1;
    if (size < 0) return std::unexpected(errno);
    std::string bytes(limit, '\0');
    const off_t start = std::max<off_t>(0, size - static_cast<off_t>(limit));
    const ssize_t got = pread(file.get(), bytes.data(), bytes.size(), start);
    if (got < 0) return std::unexpected(errno);
    bytes.resize(static_cast<std::size_t>(got));
    return bytes;
}

bool isCalendarFile(const fs::path& path) {
    std::string extension = path.extension().native();
    std::ranges::transform(extension, extension.begin(), [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    });
    return extension == ".ics";
}

}  // namespace

CalendarFolders::CalendarFolders(fs::path directory, Missing missing)
    : directory_(std::move(directory)), missing_(missing) {}

std::vector<platform::CalendarEntry> CalendarFolders::calendars() {
    std::vector<platform::CalendarEntry> calendars;
    for (const auto& account : visibleEntries(directory_)) {
        std::error_code error;
        if (account.is_directory(error) && !isAbove(account, directory_)) appendAccount(account, calendars);
    }
    faults_.endQuestion();
    return calendars;
}

/// Sorted by the bytes of the names: no directory has an order of its own.
std::vector<fs::directory_entry> CalendarFolders::visibleEntries(const fs::path& directory) {
    std::vector<fs::directory_entry> entries;
    std::error_code error;
    for (fs::directory_iterator entry(directory, error); !error && entry != fs::directory_iterator();
         entry.increment(error)) {
        if (!entry->path().filename().native().starts_with('.')) entries.push_back(*entry);
    }
    const bool isMissing = error == std::errc::no_such_file_or_directory;
    if (isMissing && missing_ == Missing::IsAFault && directory == directory_) {
        faults_.report("The calendars directory " + quotedText(directory.native()) +
                       " cannot be used: " + error.message() + ".");
    } else if (error && !isMissing) {
        faults_.report("The calendars in " + quotedText(directory.native()) +
                       " could not be listed: " + error.message() + ".");
    }
    std::ranges::sort(entries, {}, [](const fs::directory_entry& entry) { return entry.path().native(); });
    return entries;
}

/// A symbolic link may lead back to where it stands; that is no calendar.
bool CalendarFolders::isAbove(const fs::path& folder, const fs::path& account) const {
    std::error_code error;
    return fs::equivalent(folder, directory_, error) || fs::equivalent(folder, account, error);
}

void CalendarFolders::appendAccount(const fs::path& account,
                                    std::vector<platform::CalendarEntry>& calendars) {
    for (const auto& candidate : visibleEntries(account)) {
        std::error_code error;
        if (candidate.is_directory(error)) {
            if (!isAbove(candidate, account))
                calendars.push_back(entry(candidate.path(), describeFolder(candidate.path())));
        } else if (isCalendarFile(candidate.path())) {
            if (const auto description = describeFile(candidate.path()))
                calendars.push_back(entry(candidate.path(), *description));
        }
    }
}

CalendarFolders::Description CalendarFolders::describeFolder(const fs::path& folder) {
    return {folder.filename().native(), shortText(folder / "displayname"), shortText(folder / "color"),
            folder / "color"};
}

std::optional<CalendarFolders::Description> CalendarFolders::describeFile(const fs::path& file) {
    const auto head = host::readHead(file.native(), CalendarHead::maximumSize);
    const auto couldNotBeRead = [&](int error) {
        faults_.report("The calendar " + quotedText(file.native()) +
                       " could not be read: " + host::message(error) + ".");
        return std::nullopt;
    };
    if (!head) return couldNotBeRead(head.error());
    auto parsed = CalendarHead::parse(head->bytes);
    if (parsed) {
        const host::Outcome<std::string> tail =
            head->whole ? head->bytes : readTail(file.native(), CalendarHead::tailSize);
        if (!tail) return couldNotBeRead(tail.error());
        if (!CalendarHead::isTailOfWholeFile(*tail))
            parsed = platform::failure("is cut short: it does not end with END:VCALENDAR");
    }
    if (!parsed) {
        faults_.report(
            "The calendar " + quotedText(file.native()) + " " + parsed.error().localizedDescription + ".",
            head->state);
        return std::nullopt;
    }
    return Description{file.stem().native(), std::move(parsed->name), std::move(parsed->colour), file};
}

/// The text of a small file; empty when there is none.
std::optional<std::string> CalendarFolders::shortText(const fs::path& file) {
    auto head = host::readHead(file.native(), maximumShortText);
    if (!head) {
        if (head.error() != ENOENT)
            faults_.report("The file " + quotedText(file.native()) +
                           " could not be read: " + host::message(head.error()) + ".");
        return std::nullopt;
    }
    if (!head->whole) {
        faults_.report("The file " + quotedText(file.native()) + " is too long for one line.", head->state);
        return std::nullopt;
    }
    return std::move(head->bytes);
}

platform::CalendarEntry CalendarFolders::entry(const fs::path& path, const Description& description) {
    platform::CalendarEntry calendar;
    const std::string account = path.parent_path().filename().native();
    calendar.account = escapedText(account);
    // A slash is in no file's name, so the two halves cannot run into each other.
    calendar.identifier = calendar.account + "/" + escapedText(path.filename().native());
    // An identifier always shows something.
    for (const std::string& name :
         {description.name.value_or(""),
          isMadeUpName(description.fallbackName) ? account : description.fallbackName, account,
          calendar.identifier}) {
        if (calendar.title.empty()) calendar.title = titleFrom(name);
    }
    calendar.colour = colourFor(calendar.identifier);
    if (!description.colour || titleFrom(*description.colour).empty()) return calendar;
    if (const auto colour = colourFromText(*description.colour)) {
        calendar.colour = *colour;
    } else {
        faults_.report("The colour \"" + titleFrom(*description.colour) + "\" in " +
                       quotedText(description.colourFile.native()) + " is none.");
    }
    return calendar;
}

}  // namespace device
