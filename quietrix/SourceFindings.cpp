// SPDX-License-Identifier: MIT
#include "quietrix/SourceFindings.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <string_view>

#include "device/DesktopProgram.h"
#include "device/EscapedText.h"
#include "device/HostFile.h"
#include "device/PhonePaths.h"
#include "device/tones/SoundThemes.h"
#include "device/tones/ThemeTones.h"
#include "platform/foundation/PropertyList.h"
#include "quietrix/ProfileEditing.h"

namespace console {

namespace {

using device::SoundThemes;

/// More of one kind are counted.
constexpr std::size_t mostNamed = 3;

/// The first of the texts, and how many more there are.
std::string firstOf(const std::vector<std::string>& texts, std::string_view between) {
    std::string list;
    for (std::size_t i = 0; i < std::min(texts.size(), mostNamed); ++i)
        list += (i == 0 ? "" : std::string(between)) + texts[i];
    if (texts.size() > mostNamed) list += " And " + std::to_string(texts.size() - mostNamed) + " more.";
    return list;
}

Finding calendars(const Session& session) {
    const auto& path = device::phonePaths::calendars;
    const auto accounts = session.files().list(path);
    if (accounts) return Finding::well("calendars", counted(accounts->size(), "account", "accounts") + ".");
    return Finding::ill("calendars", accounts.error().localizedDescription,
                        session.files().exists(path)
                            ? "Make it a directory that you may read, with folders of iCalendar files."
                            : "Make the directory, and put folders of iCalendar files there.");
}

Finding networks(const Session& session) {
    const auto& path = device::phonePaths::knownNetworks;
    const auto stamp = session.files().stamp(path);
    if (stamp && !*stamp) return Finding::well("networks", "The phone remembers none.");
    const auto bytes = session.files().read(path);
    const auto list = bytes ? platform::PropertyListSerialization::propertyListWithData(*bytes)
                            : std::unexpected(bytes.error());
    if (list && list->array())
        return Finding::well("networks", "The list of remembered networks can be read.");
    return Finding::ill(
        "networks",
        device::quotedText(path) + " cannot be used. " +
            (list ? "The root of the property list is no array." : list.error().localizedDescription),
        "Remove it, or put a property list in its place.");
}

Finding tones(const SoundThemes::Found& found) {
    if (!found.faults.empty()) {
        std::vector<std::string> faults;
        faults.reserve(found.faults.size());
        for (const SoundThemes::Fault& fault : found.faults) faults.push_back(fault.sentence);
        return Finding::ill("tones", firstOf(faults, " "),
                            "Mend or remove what is named; the other sounds are offered.");
    }
    if (found.sounds.empty())
        return Finding::well("tones", "This machine has no sound themes: the built-in tones are offered.");
    return Finding::well(
        "tones", counted(found.sounds.size(), "sound", "sounds") + " in the sound themes of this machine.");
}

Finding alertTones(const Session::Records& profiles, const SoundThemes::Sounds& sounds) {
    std::vector<std::string> missing;
    std::size_t count = 0;
    for (const auto& profile : profiles) {
        const auto& tone = profile->alertToneIdentifier();
        if (!tone) continue;
        ++count;
        if (!device::ThemeTones::has(*tone, sounds))
            missing.push_back("The tone " + device::quotedText(*tone) + " of " + nameInWords(*profile) +
                              " is not on this machine.");
    }
    if (missing.empty() && count == 0) return Finding::well("alert tones", "No profile has one.");
    if (missing.empty())
        return Finding::well("alert tones", "All are on this machine; " +
                                                counted(count, "profile has", "profiles have") + " one.");
    return Finding::ill("alert tones", firstOf(missing, " "),
                        "Choose another one, or \"quietrix set PROFILE alertToneIdentifier=none\".");
}

Finding mail(const Session& session) {
    for (const std::string_view folder : {device::phonePaths::mailDrafts, device::phonePaths::mailOutbox}) {
        // The first mail makes what is not there.
        const std::string path = session.files().hostPath(folder);
        if (access(path.c_str(), F_OK) != 0 && errno == ENOENT) continue;
        const bool isFolder = session.files().isDirectory(folder);
        if (isFolder && access(path.c_str(), W_OK | X_OK) == 0) continue;
        const std::string reason = isFolder ? device::host::message(errno) : "Not a directory";
        return Finding::ill("mail",
                            "No mail can be put into " + device::quotedText(path) + ": " + reason + ".",
                            "Give yourself the right to write there, or remove it: it is made anew.");
    }
    return Finding::well("mail", device::hasDesktopProgram("xdg-open")
                                     ? "Mails are kept, and offered to the desktop's mail program."
                                     : "Mails are kept; there is no desktop here that could send them.");
}

}  // namespace

Findings sourceFindings(const Session& session, const Session::Records& profiles) {
    const auto found = SoundThemes(SoundThemes::systemDirectories()).look();
    return {calendars(session), networks(session), tones(found), alertTones(profiles, found.sounds),
            mail(session)};
}

}  // namespace console
