// SPDX-License-Identifier: MIT
#include "profile/model/ProfileHistory.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string_view>
#include <tuple>
#include <utility>

#include "platform/foundation/Calendar.h"
#include "platform/foundation/FileManager.h"
#include "platform/foundation/LogSink.h"
#include "profile/model/ProfilesPath.h"

namespace quietrix {

namespace {

using platform::Data;
using platform::Date;
using platform::failure;
using platform::FileHistory;
using platform::FileManager;
using platform::FileStamp;
using platform::Missing;
using platform::Result;

using History = std::unique_ptr<FileHistory>;

// NUMBER-TIME-DIGEST.plist: ten decimal digits, milliseconds since 1970, sixteen hexadecimal digits. The
// names of a folder are in the order of the numbers.
constexpr std::size_t numberLength = 10;
constexpr std::uint64_t largestNumber = 9'999'999'999;
constexpr std::size_t digestLength = 16;
constexpr std::string_view absence = "absent";
constexpr std::string_view suffix = ".plist";
constexpr double referenceInUnixTime = 978307200.0;
/// Whoever writes the file at each attempt does so for longer than anybody waits.
constexpr int mostAttempts = 100;

/// Tells bytes from others that an editor, a copy or a failing disk has made of them; it is no protection
/// against somebody who means to deceive, who could as well rename the file. It keeps the processor's
/// multipliers busy: a change of a large file must not be noticeably slower for it.
std::uint64_t digestOf(const Data& bytes) {
    constexpr std::uint64_t odd = 0x9E3779B97F4A7C15;
    const auto mixed = [](std::uint64_t digest, std::uint64_t word) {
        digest = (digest ^ word) * odd;
        return digest ^ digest >> 32;
    };
    std::array<std::uint64_t, 4> lanes{1, 2, 3, 4};
    std::array<std::uint64_t, 4> words{};
    std::size_t position = 0;
    for (; bytes.size() - position >= sizeof words; position += sizeof words) {
        std::memcpy(words.data(), bytes.data() + position, sizeof words);
        for (std::size_t lane = 0; lane < lanes.size(); ++lane) lanes[lane] = mixed(lanes[lane], words[lane]);
    }
    std::uint64_t digest = bytes.size();
    for (const std::uint64_t lane : lanes) digest = mixed(digest, lane);
    for (; position < bytes.size(); ++position) digest = mixed(digest, bytes[position]);
    return digest;
}

template <class Number>
std::optional<Number> parsed(std::string_view digits, int base) {
    Number number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number, base);
    if (error != std::errc() || end != digits.data() + digits.size()) return std::nullopt;
    return number;
}

Date dateOf(std::int64_t millisecondsSince1970) {
    return {static_cast<double>(millisecondsSince1970) / 1000.0 - referenceInUnixTime};
}

std::optional<ProfileGeneration> generationNamed(const std::string& name) {
    std::string_view rest = name;
    if (!rest.ends_with(suffix)) return std::nullopt;
    rest.remove_suffix(suffix.size());
    const std::size_t first = rest.find('-');
    const std::size_t last = rest.rfind('-');
    if (first != numberLength || last == first) return std::nullopt;
    const auto number = parsed<std::uint64_t>(rest.substr(0, first), 10);
    const auto milliseconds = parsed<std::int64_t>(rest.substr(first + 1, last - first - 1), 10);
    const std::string_view what = rest.substr(last + 1);
    const bool isAbsence = what == absence;
    const auto digest = what.size() == digestLength ? parsed<std::uint64_t>(what, 16) : std::nullopt;
    if (!number || *number == 0 || !milliseconds || (!isAbsence && !digest)) return std::nullopt;
    return ProfileGeneration{*number, dateOf(*milliseconds), isAbsence, digest.value_or(0), name};
}

ProfileGeneration generation(std::uint64_t number, std::int64_t milliseconds,
                             std::optional<std::uint64_t> digest) {
    std::array<char, 64> name{};
    const auto time = static_cast<unsigned long long>(std::max<std::int64_t>(milliseconds, 0));
    const auto digits = static_cast<unsigned long long>(number);
    if (digest) {
        std::snprintf(name.data(), name.size(), "%010llu-%013llu-%016llx.plist", digits, time,
                      static_cast<unsigned long long>(*digest));
    } else {
        std::snprintf(name.data(), name.size(), "%010llu-%013llu-absent.plist", digits, time);
    }
    return *generationNamed(name.data());
}

std::int64_t millisecondsNow() {
    return static_cast<std::int64_t>(
        std::floor((platform::dateNow().secondsSinceReference + referenceInUnixTime) * 1000.0));
}

/// The newest first.
Result<std::vector<ProfileGeneration>> generationsIn(const FileHistory& history) {
    const auto names = history.names();
    if (!names) return std::unexpected(names.error());
    std::vector<ProfileGeneration> generations;
    generations.reserve(names->size());
    for (const std::string& name : *names) {
        if (auto generation = generationNamed(name)) generations.push_back(*std::move(generation));
    }
    std::ranges::reverse(generations);
    return generations;
}

std::tuple<std::int64_t, std::int64_t, std::int64_t> dayOf(Date time) {
    const auto day = platform::Calendar::currentCalendar().components_fromDate(
        platform::CalendarUnitYear | platform::CalendarUnitMonth | platform::CalendarUnitDay, time);
    return {day.year, day.month, day.day};
}

/// The newest one's time stands for the present. So a clock that was set wrong costs days, and never the
/// newest.
void thin(FileHistory& history, const std::vector<ProfileGeneration>& newestFirst) {
    constexpr double longest = ProfileHistory::daysKept * 86400.0;
    const double present = newestFirst.front().time.secondsSinceReference;
    int daysBefore = 0;
    for (std::size_t i = ProfileHistory::latestKept; i < newestFirst.size(); ++i) {
        const Date time = newestFirst[i].time;
        const bool isLastOfDay = dayOf(time) != dayOf(newestFirst[i - 1].time);
        const bool isRecent = present - time.secondsSinceReference <= longest;
        if (isLastOfDay && isRecent && ++daysBefore <= ProfileHistory::daysKept) continue;
        // One that cannot be removed is met again here after the next change.
        static_cast<void>(history.remove(newestFirst[i].name));
    }
}

bool isSameState(const FileStamp& one, const FileStamp& other) {
    return one.device == other.device && one.inode == other.inode && one.size == other.size &&
           one.modifiedNanoseconds == other.modifiedNanoseconds;
}

/// Whether the generation's own bytes are these.
bool holds(const FileHistory& history, const ProfileGeneration& generation, const FileStamp& file,
           const Data& bytes) {
    if (generation.isAbsence || generation.digest != digestOf(bytes)) return false;
    const auto stamp = history.stamp(generation.name);
    if (stamp && isSameState(*stamp, file)) return true;
    const auto kept = history.read(generation.name);
    return kept && *kept == bytes;
}

std::uint64_t numberAfter(const std::vector<ProfileGeneration>& newestFirst) {
    return newestFirst.empty() ? 1 : newestFirst.front().number + 1;
}

std::unexpected<platform::Error> notKept(const std::string& reason) {
    return failure("The file \"" + std::string(profilesPath) +
                   "\" could not be kept in its history: " + reason + ".");
}

/// Empty where the file has become another meanwhile, or somebody else has taken the number.
using Attempt = Result<std::optional<ProfileGeneration>>;

/// What has just been made in the folder under the number. Two who looked at the folder at the same time may
/// have taken the same one for two states: the later of them sees that here, and both give it back.
Attempt claimed(FileHistory& history, const ProfileGeneration& next) {
    const auto generations = generationsIn(history);
    if (!generations) return std::unexpected(generations.error());
    if (std::ranges::count(*generations, next.number, &ProfileGeneration::number) != 1) {
        static_cast<void>(history.remove(next.name));
        return std::nullopt;
    }
    thin(history, *generations);
    return next;
}

Attempt keepFile(FileHistory& history, const FileStamp& file, const Data& bytes) {
    const auto generations = generationsIn(history);
    if (!generations) return std::unexpected(generations.error());
    if (!generations->empty() && holds(history, generations->front(), file, bytes))
        return generations->front();
    if (numberAfter(*generations) > largestNumber) return notKept("there is no number left");
    const auto next =
        generation(numberAfter(*generations), file.modifiedNanoseconds / 1'000'000, digestOf(bytes));
    const auto kept = history.keep(next.name);
    if (!kept) return std::unexpected(kept.error());
    if (*kept == FileHistory::Kept::NameIsTaken) return std::nullopt;
    // What was linked may be another file than the one whose bytes the name tells of.
    const auto linked = history.stamp(next.name);
    if (linked && isSameState(*linked, file)) return claimed(history, next);
    static_cast<void>(history.remove(next.name));
    return std::nullopt;
}

Attempt keepAbsence(FileHistory& history, const std::vector<ProfileGeneration>& newestFirst) {
    if (newestFirst.front().isAbsence) return newestFirst.front();
    if (numberAfter(newestFirst) > largestNumber) return notKept("there is no number left");
    const auto next = generation(numberAfter(newestFirst), millisecondsNow(), std::nullopt);
    const auto marked = history.mark(next.name);
    if (!marked) return std::unexpected(marked.error());
    if (*marked == FileHistory::Kept::NameIsTaken) return std::nullopt;
    return claimed(history, next);
}

/// The present state of a root whose history cannot be had or added to. It can be looked at all the same.
std::pair<ProfileHistoryEntry, Result<ProfilesFile>> unkept(const platform::Error& why) {
    const FileManager& files = FileManager::defaultManager();
    const auto file = files.stampAtPath(profilesPath);
    ProfileHistoryEntry entry{
        .time = platform::dateNow(), .isPresent = true, .problem = why.localizedDescription};
    if (!file) return {std::move(entry), std::unexpected(file.error())};
    entry.isAbsence = !*file;
    if (entry.isAbsence) return {std::move(entry), ProfilesFile()};
    entry.time = dateOf((*file)->modifiedNanoseconds / 1'000'000);
    auto bytes = files.contentsAtPath(profilesPath);
    if (!bytes) return {std::move(entry), std::unexpected(bytes.error())};
    return {std::move(entry), ProfilesFile::parse(*std::move(bytes))};
}

}  // namespace

Result<std::optional<ProfileGeneration>> ProfileHistory::keep(const Data* bytes) {
    FileManager& files = FileManager::defaultManager();
    for (int attempt = 0; attempt < mostAttempts; ++attempt) {
        const auto file = files.stampAtPath(profilesPath);
        if (!file) return std::unexpected(file.error());
        auto history = files.openHistory(profilesPath, *file ? Missing::Make : Missing::Leave);
        if (!history) return std::unexpected(history.error());
        if (!*file) {
            const auto earlier = *history ? generationsIn(**history) : std::vector<ProfileGeneration>();
            if (!earlier) return std::unexpected(earlier.error());
            if (earlier->empty()) return std::nullopt;
            auto kept = keepAbsence(**history, *earlier);
            if (!kept || *kept) return kept;
            continue;
        }
        std::optional<Data> read;
        if (attempt > 0 || bytes == nullptr || std::cmp_not_equal(bytes->size(), (*file)->size)) {
            auto now = files.contentsAtPath(profilesPath);
            if (!now && files.stampAtPath(profilesPath) == file) return std::unexpected(now.error());
            if (!now) continue;
            read = *std::move(now);
        }
        auto kept = keepFile(**history, **file, read ? *read : *bytes);
        if (!kept || *kept) return kept;
    }
    return notKept("it changes too often");
}

Result<std::vector<ProfileGeneration>> ProfileHistory::generations() {
    const auto history = FileManager::defaultManager().openHistory(profilesPath, Missing::Leave);
    if (!history) return std::unexpected(history.error());
    if (!*history) return {};
    return generationsIn(**history);
}

Result<ProfileGeneration> ProfileHistory::generationOfNumber(std::uint64_t number) {
    const auto newestFirst = generations();
    if (!newestFirst) return std::unexpected(newestFirst.error());
    const auto found = std::ranges::find(*newestFirst, number, &ProfileGeneration::number);
    if (found != newestFirst->end()) return *found;
    const std::string none = "There is no state of the number " + std::to_string(number) +
                             " in the history of \"" + std::string(profilesPath) + "\"";
    if (newestFirst->empty()) return failure(none + ", which is empty.");
    return failure(none + "; it has " + std::to_string(newestFirst->size()) + ", from " +
                   std::to_string(newestFirst->back().number) + " to " +
                   std::to_string(newestFirst->front().number) + ".");
}

Result<Data> ProfileHistory::bytes(const ProfileGeneration& generation) {
    if (generation.isAbsence) return {};
    const auto history = FileManager::defaultManager().openHistory(profilesPath, Missing::Leave);
    if (!history) return std::unexpected(history.error());
    auto bytes = *history ? (*history)->read(generation.name)
                          : failure("The state \"" + generation.name + "\" is not there any more.");
    if (bytes && digestOf(*bytes) != generation.digest) {
        return failure("The state " + std::to_string(generation.number) + " of \"" +
                       std::string(profilesPath) + "\" is lost: another program has written over it.");
    }
    return bytes;
}

Result<ProfilesFile> ProfileHistory::profiles(const ProfileGeneration& generation) {
    if (generation.isAbsence) return ProfilesFile();
    auto bytes = ProfileHistory::bytes(generation);
    if (!bytes) return std::unexpected(bytes.error());
    auto file = ProfilesFile::parse(*std::move(bytes));
    if (file) return file;
    return failure("The state " + std::to_string(generation.number) + " of \"" + std::string(profilesPath) +
                   "\" cannot be used. " + file.error().localizedDescription);
}

Result<std::vector<ProfileHistoryEntry>> ProfileHistory::entries() {
    const auto present = keep();
    auto states = generations();
    if (!states && present) return std::unexpected(states.error());
    const bool isKnown = states.has_value();
    if (!isKnown) states.emplace();
    std::ranges::reverse(*states);

    std::vector<ProfileHistoryEntry> entries;
    // The last state that could be read. Before the very first there was nothing; before one that follows on
    // others which were thinned out, or where none can be had, nobody knows.
    std::optional<ProfilesFile> before;
    if (isKnown && (states->empty() || states->front().number == 1)) before.emplace();
    const auto add = [&](ProfileHistoryEntry entry, Result<ProfilesFile> file) {
        if (file) {
            if (before) entry.difference = ProfilesDifference::between(*before, *file);
            before = *std::move(file);
        } else if (entry.problem.empty()) {
            entry.problem = file.error().localizedDescription;
        }
        entries.push_back(std::move(entry));
    };
    for (const ProfileGeneration& each : *states)
        add({.number = each.number, .time = each.time, .isAbsence = each.isAbsence}, profiles(each));
    if (!present) {
        auto [entry, file] = unkept(present.error());
        add(std::move(entry), std::move(file));
    } else if (!entries.empty()) {
        entries.back().isPresent = true;
    }
    std::ranges::reverse(entries);
    return entries;
}

void ProfileHistory::keepOrLog() {
    if (const auto kept = keep(); !kept) platform::log(kept.error().localizedDescription);
}

Result<void> ProfileHistory::removeProfilesFile() {
    keepOrLog();
    auto removed = FileManager::defaultManager().removeItemAtPath(profilesPath);
    if (removed) static_cast<void>(keep());
    return removed;
}

}  // namespace quietrix
