// SPDX-License-Identifier: MIT
// Looks at all that a root needs to be in order. It mends nothing.
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <iterator>

#include "device/EscapedText.h"
#include "device/FreshRoot.h"
#include "device/HostFile.h"
#include "device/PhonePaths.h"
#include "platform/foundation/FileManager.h"
#include "quietrix/Commands.h"
#include "quietrix/SourceFindings.h"
#include "shell/base/MainSettings.h"

namespace console {

namespace {

constexpr double lockSeconds = 2.0;

constexpr const char* rightsFirst = "Mend the rights first.";

/// What makes the preferences writable.
std::string mendOf(int error) {
    if (error == EROFS) return "Mount the file system so that it can be written.";
    if (error == ENOENT) return "This directory has files of something else: name another with --root DIR.";
    return "Give yourself the right to read and write it, as its owner or root can.";
}

Finding root(const Session& session) {
    const std::string path = session.files().rootDirectory();
    const std::string name = device::quotedText(path);
    const std::string another = "Name another with --root DIR.";
    struct stat status{};
    if (!session.files().exists("/") && lstat(path.c_str(), &status) == 0 && S_ISLNK(status.st_mode))
        return Finding::ill("root", name + " is a link to what is not there.",
                            "Make the directory that it leads to, or remove the link.");
    const auto isUnfilled = device::isUnfilledRoot(path);
    if (session.files().exists("/") && !session.files().isDirectory("/"))
        return Finding::ill("root", name + " is not a directory.", another);
    if (!isUnfilled)
        return Finding::ill("root", isUnfilled.error().localizedDescription,
                            "Give yourself the right to read it, as its owner or root can.");
    if (*isUnfilled)
        return Finding::ill("root", name + (session.files().exists("/") ? " is empty." : " is not there."),
                            "\"quietrix on\" makes a new phone of it; --root DIR names another.");
    return Finding::well("root", device::escapedText(path));
}

Finding rights(const Session& session) {
    const std::string path = session.files().hostPath(device::phonePaths::preferences);
    if (access(path.c_str(), R_OK | W_OK | X_OK) == 0)
        return Finding::well("rights", "The preferences can be changed.");
    const int error = errno;
    return Finding::ill(
        "rights", device::quotedText(path) + " cannot be changed: " + device::host::message(error) + ".",
        mendOf(error));
}

Finding settingsFile(const Session& session) {
    const auto settings = session.settings();
    if (!settings)
        return Finding::ill(
            "settings file", settings.error().message,
            "Start quietrix-settings once: it puts a damaged one aside and makes a fresh one.");
    if (settings->isNil())
        return Finding::ill(
            "settings file", device::quotedText(quietrix::mainSettingsPath()) + " is not there.",
            "Without it the switch cannot be moved; make a new root, or copy one from there.");
    return Finding::well("settings file", (*settings)[quietrix::productSwitchKey()].isTrue()
                                              ? "The product is on."
                                              : "The product is off.");
}

Finding profilesFile(const Session& session, const std::expected<Session::Records, Refusal>& profiles) {
    if (!profiles)
        return Finding::ill("profiles file", profiles.error().message,
                            session.files().isDirectory(quietrix::profilesPath)
                                ? "Move the directory out of the way."
                                : "Put a good copy in its place with \"quietrix reset\" and \"quietrix "
                                  "import\", or go back with \"quietrix restore\".");
    if (!session.files().exists(quietrix::profilesPath))
        return Finding::well("profiles file", "There is none yet.");
    return Finding::well("profiles file", counted(profiles->size(), "profile", "profiles") + ".");
}

Finding locks() {
    auto& files = platform::FileManager::defaultManager();
    const auto lock = files.lockExclusively(quietrix::profilesPath, lockSeconds);
    if (lock) return Finding::well("locks", "Nobody keeps the profiles file locked.");
    return Finding::ill("locks", lock.error().localizedDescription, "End the process that holds it.");
}

Finding notifications(Session& session, bool canChange) {
    const auto connected = session.connect();
    if (connected)
        return Finding::well("notifications", "Changes reach the programs that have the phone open.");
    return Finding::ill(
        "notifications", connected.error().localizedDescription,
        canChange
            ? "Remove " + device::quotedText(session.files().hostPath(device::phonePaths::notifications)) +
                  ": it is made anew."
            : rightsFirst);
}

Findings findings(Session& session) {
    Findings all{root(session)};
    // There is nothing to look at in a root that is none.
    if (!all.front().isOk) return all;
    all.push_back(rights(session));
    const bool canChange = all.back().isOk;
    // Nor in a directory of something else, where looking would leave something.
    if (!session.files().isDirectory(device::phonePaths::preferences)) return all;
    all.push_back(settingsFile(session));
    const auto profiles = session.profiles();
    all.push_back(profilesFile(session, profiles));
    if (canChange) all.push_back(locks());
    all.push_back(notifications(session, canChange));
    std::ranges::move(sourceFindings(session, profiles.value_or(Session::Records())),
                      std::back_inserter(all));
    return all;
}

Outcome doctor(Session& session) {
    session.output().silenceLog();
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
