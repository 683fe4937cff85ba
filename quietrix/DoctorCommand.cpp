// SPDX-License-Identifier: MIT
// Looks at all that a root needs to be in order. It mends nothing.
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "device/EscapedText.h"
#include "device/HostFile.h"
#include "device/PhonePaths.h"
#include "platform/foundation/DarwinNotificationCenter.h"
#include "platform/foundation/FileManager.h"
#include "platform/foundation/PropertyList.h"
#include "quietrix/Commands.h"
#include "shell/base/MainSettings.h"

namespace console {

namespace {

constexpr double lockSeconds = 2.0;

struct Finding {
    std::string check;
    bool isOk;
    std::string detail;
    std::string mend;
};

Finding well(std::string check, std::string detail) {
    return {std::move(check), true, std::move(detail), ""};
}

Finding ill(std::string check, std::string detail, std::string mend) {
    return {std::move(check), false, std::move(detail), std::move(mend)};
}

std::string counted(std::size_t count, const std::string& one, const std::string& many) {
    return std::to_string(count) + " " + (count == 1 ? one : many);
}

Finding root(const Session& session) {
    const std::string path = session.files().rootDirectory();
    if (!session.files().exists("/"))
        return ill("root", device::quotedText(path) + " is not there.",
                   "\"quietrix on\" makes a new one; --root DIR names another.");
    if (!session.files().isDirectory("/"))
        return ill("root", device::quotedText(path) + " is not a directory.",
                   "Name another with --root DIR.");
    return well("root", device::escapedText(path));
}

Finding rights(const Session& session) {
    const std::string path = session.files().hostPath(device::phonePaths::preferences);
    if (access(path.c_str(), R_OK | W_OK | X_OK) == 0)
        return well("rights", "The preferences can be changed.");
    const int error = errno;
    return ill("rights",
               device::quotedText(path) + " cannot be changed: " + device::host::message(error) + ".",
               error == ENOENT ? "\"quietrix on\" fills a new root; this one has files of something else."
                               : "Give yourself the right to read and write it, as its owner or root can.");
}

Finding settingsFile() {
    const std::string path = device::quotedText(quietrix::mainSettingsPath());
    const auto settings = quietrix::readMainSettings();
    if (!settings)
        return ill("settings file", path + " cannot be used. " + settings.error().localizedDescription,
                   "Start quietrix-settings once: it puts a damaged one aside and makes a fresh one.");
    if (settings->isNil())
        return ill("settings file", path + " is not there.",
                   "Without it the switch cannot be moved; make a new root, or copy one from there.");
    return well("settings file", (*settings)[quietrix::productSwitchKey()].isTrue() ? "The product is on."
                                                                                    : "The product is off.");
}

Finding profilesFile(Session& session) {
    const auto profiles = session.profiles();
    if (!profiles)
        return ill("profiles file", profiles.error().message,
                   "Put a good copy in its place with \"quietrix reset\" and \"quietrix import\".");
    if (!session.files().exists(quietrix::profilesPath)) return well("profiles file", "There is none yet.");
    return well("profiles file", counted(profiles->size(), "profile", "profiles") + ".");
}

Finding locks() {
    auto& files = platform::FileManager::defaultManager();
    const auto lock = files.lockExclusively(quietrix::profilesPath, lockSeconds);
    if (lock) return well("locks", "Nobody keeps the profiles file locked.");
    return ill("locks", lock.error().localizedDescription, "End the process that holds it.");
}

Finding notifications() {
    const auto connected = platform::DarwinNotificationCenter::shared().connect();
    if (connected) return well("notifications", "Changes reach the programs that have the phone open.");
    return ill(
        "notifications", connected.error().localizedDescription,
        "Remove " + device::quotedText(device::phonePaths::notifications) + " of the root; it is made anew.");
}

Finding calendars(const Session& session) {
    const auto accounts = session.files().list(device::phonePaths::calendars);
    if (accounts) return well("calendars", counted(accounts->size(), "account", "accounts") + ".");
    return ill("calendars", accounts.error().localizedDescription,
               "Make the directory, and put folders of iCalendar files there.");
}

Finding networks(const Session& session) {
    const auto& path = device::phonePaths::knownNetworks;
    if (!session.files().exists(path)) return well("networks", "The phone remembers none.");
    const auto bytes = session.files().read(path);
    const auto list = bytes ? platform::PropertyListSerialization::propertyListWithData(*bytes)
                            : std::unexpected(bytes.error());
    if (list) return well("networks", "The list of remembered networks can be read.");
    return ill("networks", device::quotedText(path) + " cannot be used. " + list.error().localizedDescription,
               "Remove it, or put a property list in its place.");
}

std::vector<Finding> findings(Session& session) {
    std::vector<Finding> all{root(session)};
    // There is nothing to look at in a root that is none.
    if (!all.front().isOk) return all;
    all.push_back(rights(session));
    const bool canChange = all.back().isOk;
    all.push_back(settingsFile());
    all.push_back(profilesFile(session));
    if (canChange) all.push_back(locks());
    all.push_back(notifications());
    all.push_back(calendars(session));
    all.push_back(networks(session));
    return all;
}

Outcome doctor(Session& session) {
    const auto all = findings(session);
    Answer answer;
    boost::json::array array;
    for (const Finding& finding : all) {
        using Colour = Output::Colour;
        answer.text += session.output().coloured(finding.isOk ? Colour::Green : Colour::Red,
                                                 finding.isOk ? "well" : "ill ") +
                       "  " + finding.check + ": " + device::visibleText(finding.detail) + "\n";
        if (!finding.isOk) answer.text += "      " + device::visibleText(finding.mend) + "\n";
        boost::json::value mend = nullptr;
        if (!finding.isOk) mend = device::escapedText(finding.mend);
        array.push_back(boost::json::object{{"check", finding.check},
                                            {"ok", finding.isOk},
                                            {"detail", device::escapedText(finding.detail)},
                                            {"mend", std::move(mend)}});
    }
    answer.json = std::move(array);
    if (!std::ranges::all_of(all, &Finding::isOk)) answer.status = Status::Failed;
    return answer;
}

}  // namespace

void addDoctor(Commands& commands) {
    commands.add("doctor", "Tells what is well with the root, what is not, and how to mend it").run(doctor);
}

}  // namespace console
