// SPDX-License-Identifier: MIT
#include "settings/program/CheckProgram.h"

#include <sys/wait.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string_view>
#include <system_error>

#include "device/Interruption.h"
#include "device/PhonePaths.h"
#include "device/PrivateLock.h"
#include "device/ProcessEnd.h"
#include "device/RootFileHistory.h"
#include "settings/application/Application.h"
#include "settings/checking/AcceptedFindings.h"
#include "settings/checking/BundleCheck.h"
#include "settings/checking/Report.h"
#include "settings/program/ChildRun.h"
#include "settings/program/Output.h"
#include "settings/program/PhoneSetup.h"
#include "settings/recording/RecordedRoot.h"

namespace settings {

namespace fs = std::filesystem;
using platform::failure;
using platform::Result;

namespace {

constexpr int clean = 0;
constexpr int hasFindings = 1;
constexpr int cannotBegin = 2;
/// The status of a program that a signal has ended is this and the signal's number.
constexpr int byASignal = 128;

/// What is the running phone's own and no data.
bool isOwn(std::string_view phonePath) {
    return phonePath.starts_with(device::phonePaths::notifications) ||
           phonePath.starts_with(device::phonePaths::preferenceBundles) ||
           phonePath.starts_with("/Applications");
}

/// Copies the files of one root over those of another. Links to directories lead out of the phone and stay
/// behind.
Result<void> copyData(const fs::path& from, const fs::path& to) {
    std::error_code error;
    fs::recursive_directory_iterator each(from, error);
    for (; !error && each != fs::recursive_directory_iterator(); each.increment(error)) {
        const fs::path inside = each->path().lexically_relative(from);
        const std::string name = each->path().filename().string();
        if (isOwn("/" + inside.string()) || name == device::PrivateLock::folderName ||
            device::RootFileHistory::isFolderName(name)) {
            if (each->is_directory(error)) each.disable_recursion_pending();
        } else if (each->is_directory(error) && !each->is_symlink(error)) {
            fs::create_directories(to / inside, error);
        } else if (each->is_regular_file(error)) {
            fs::copy_file(each->path(), to / inside, fs::copy_options::overwrite_existing, error);
        }
        if (error)
            return failure("\"" + each->path().string() + "\" could not be copied: " + error.message() + ".");
    }
    if (error)
        return failure("The root \"" + from.string() + "\" could not be copied: " + error.message() + ".");
    return {};
}

Result<std::vector<AcceptedFinding>> readAccepted(const std::string& path) {
    const auto cannotBeRead = [&] { return failure("The file \"" + path + "\" cannot be read."); };
    std::error_code error;
    if (fs::is_directory(path, error)) return cannotBeRead();
    std::ifstream file(path, std::ios::binary);
    const platform::Data data{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    if (!file.is_open() || file.bad()) return cannotBeRead();
    auto accepted = parseAcceptedFindings(data);
    if (!accepted) return failure("The file \"" + path + "\": " + accepted.error().localizedDescription);
    return accepted;
}

Result<int> check(const CommandLine& line, const std::string& resourceDirectory,
                  const std::string& systemShell, const std::string& root) {
    std::vector<AcceptedFinding> accepted;
    if (!line.check.accepted.empty()) {
        auto read = readAccepted(line.check.accepted);
        if (!read) return std::unexpected(read.error());
        accepted = *std::move(read);
    }
    std::error_code error;
    if (!line.rootDirectory.empty() && !fs::is_directory(line.rootDirectory, error))
        return failure("The root \"" + line.rootDirectory + "\" is not a directory.");

    const auto phone =
        PhoneSetup::create({root, line.bundleDirectory, resourceDirectory, line.device, systemShell});
    if (!phone) return std::unexpected(phone.error());
    Application application((*phone)->bundlePath(), phone->get());
    CheckOptions options{.timings = line.check.timings ? Timings::On : Timings::Off};
    if (!line.rootDirectory.empty()) options.bringData = [&] { return copyData(line.rootDirectory, root); };
    const auto outcome = checkBundle(application, (*phone)->bundlePath(), options);
    if (!outcome) return std::unexpected(outcome.error());

    const SortedFindings sorted = sortFindings(outcome->findings.all(), accepted);
    const auto printed =
        printResult(line.check.json ? reportAsJSON(*outcome, sorted) : reportForPeople(*outcome, sorted));
    if (!line.check.junit.empty()) {
        std::ofstream file(line.check.junit, std::ios::binary);
        file << reportAsJUnit(*outcome, sorted) << std::flush;
        if (!file) return failure("The file \"" + line.check.junit + "\" cannot be written.");
    }
    if (!printed) return std::unexpected(printed.error());
    return sorted.open.empty() ? clean : hasFindings;
}

}  // namespace

Result<int> runCheck(const CommandLine& line, const std::string& resourceDirectory,
                     const std::string& systemShell) {
    const device::Interruption interruption;
    const auto scratch = TemporaryRoot::create({});
    if (!scratch) return std::unexpected(scratch.error());
    const auto process = ChildRun::begin([&] {
        const auto status = check(line, resourceDirectory, systemShell, scratch->path());
        if (status) return *status;
        std::cerr << "quietrix-settings: " << status.error().localizedDescription << '\n';
        return cannotBegin;
    });
    if (!process) return std::unexpected(process.error());
    const int end = process->wait();
    if (const int signal = device::Interruption::signal(); signal != 0) {
        std::cerr << "quietrix-settings: Interrupted.\n";
        return byASignal + signal;
    }
    // Nobody reads the report any more.
    if (WIFSIGNALED(end) && WTERMSIG(end) == SIGPIPE) return byASignal + SIGPIPE;
    if (!WIFEXITED(end))
        return failure("The program died of what it looked at: " + device::processEndText(end) + ".");
    return WEXITSTATUS(end);
}

}  // namespace settings
