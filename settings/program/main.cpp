// SPDX-License-Identifier: MIT
#include <unistd.h>

#include <exception>
#include <iostream>
#include <optional>
#include <string>
#include <vector>

#include "device/ProgramPaths.h"
#include "device/ProgramStart.h"
#include "platform/foundation/RunLoop.h"
#include "settings/application/Application.h"
#include "settings/channels/Drive.h"
#include "settings/channels/Serve.h"
#include "settings/channels/Session.h"
#include "settings/channels/server/ActivatedListener.h"
#include "settings/program/CheckProgram.h"
#include "settings/program/CommandLine.h"
#include "settings/program/ExploreProgram.h"
#include "settings/program/OpenPage.h"
#include "settings/program/Output.h"
#include "settings/program/PhoneSetup.h"
#include "settings/program/RecordedRuns.h"
#include "settings/program/ViewProgram.h"
#include "settings/program/WatchedRun.h"

namespace {

constexpr const char* programName = "quietrix-settings";
constexpr int cannotBegin = 2;
/// More than a start has open at the same time, a page's first connections included.
constexpr int neededDescriptors = 40;
/// Address space for the bundle, the threads' stacks and a first screen.
constexpr std::size_t neededMemory = std::size_t{64} << 20;

int complain(const std::string& reason) {
    std::cerr << programName << ": " << reason << '\n';
    return cannotBegin;
}

int drive(settings::Application& application) {
    settings::Session session(application);
    return settings::Drive(session, STDIN_FILENO, STDOUT_FILENO).run();
}

int serve(settings::Application& application, settings::PhoneSetup& phone, const device::ProgramPaths& paths,
          const settings::CommandLine& line, std::optional<int> listener) {
    if (line.watch.isWatched)
        return settings::serveWatched(application, phone, paths.page().value_or(""), line.rootDirectory);
    settings::Serve channel(application, phone.files());
    // Without the page there still is the protocol; the server answers "not found" for the files.
    settings::ServeOptions options;
    options.port = line.port;
    options.pageDirectory = paths.page().value_or("");
    options.rootDirectory = line.rootDirectory;
    options.runtimeDirectory = device::runtimeDirectory().value_or("");
    if (line.newSecret) options.oldSecret = settings::server::OldSecret::Forget;
    options.listener = listener.value_or(-1);
    options.patience = line.patience;
    const auto served = channel.run(options);
    return served ? 0 : complain(served.error().localizedDescription);
}

int run(int argumentCount, char** argumentValues) {
    const auto paths = device::ProgramPaths::ofThisProgram();
    const auto line = settings::parseCommandLine(
        std::vector<std::string>(argumentValues + 1, argumentValues + argumentCount), paths);
    if (!line && line.error().status == 0) {
        const auto printed = settings::printResult(line.error().text);
        return printed ? 0 : complain(printed.error().localizedDescription);
    }
    if (!line) {
        std::cerr << line.error().text;
        return line.error().status;
    }
    if (line->subcommand == settings::Subcommand::Open) {
        const auto opened = settings::openPage(*line);
        return opened ? 0 : complain(opened.error().localizedDescription);
    }
    // Before there are other threads, and other programs.
    platform::Result<std::optional<int>> listener = std::nullopt;
    if (line->subcommand == settings::Subcommand::Serve && !line->watch.isOn && !line->watch.isWatched)
        listener = settings::server::activatedListener();
    if (!listener) return complain(listener.error().localizedDescription);
    if (const auto enough = device::checkDescriptors(neededDescriptors); !enough)
        return complain(enough.error().localizedDescription);
    if (const auto enough = device::checkMemory(neededMemory); !enough)
        return complain(enough.error().localizedDescription);
    const auto resources = paths.resources();
    if (!resources) return complain("The application's own files are missing beside the program.");

    if (line->watch.isOn) {
        const auto watched = settings::watchPrograms(*line, paths);
        return watched ? 0 : complain(watched.error().localizedDescription);
    }
    if (line->subcommand == settings::Subcommand::Check) {
        const auto status = settings::runCheck(*line, *resources, paths.systemShell());
        return status ? *status : complain(status.error().localizedDescription);
    }
    if (line->subcommand == settings::Subcommand::View) {
        const auto shown = settings::runView(*line, paths);
        return shown ? 0 : complain(shown.error().localizedDescription);
    }
    if (line->subcommand == settings::Subcommand::Explore) {
        const auto status = settings::runExplore(*line, *resources);
        return status ? *status : complain(status.error().localizedDescription);
    }
    if (line->subcommand == settings::Subcommand::Record ||
        line->subcommand == settings::Subcommand::Replay) {
        const auto status = line->subcommand == settings::Subcommand::Record
                                ? settings::record(*line, *resources)
                                : settings::replay(*line, *resources);
        return status ? *status : complain(status.error().localizedDescription);
    }
    const auto phone = settings::PhoneSetup::create(
        {line->rootDirectory, line->bundleDirectory, *resources, line->device, paths.systemShell()});
    if (!phone) return complain(phone.error().localizedDescription);
    settings::Application application((*phone)->bundlePath(), phone->get());
    application.start();
    // The start is over when the channel's loop runs.
    platform::dispatchMain(device::goOnWhenMemoryIsOut);
    return line->subcommand == settings::Subcommand::Drive
               ? drive(application)
               : serve(application, **phone, paths, *line, *listener);
}

}  // namespace

int main(int argumentCount, char** argumentValues) {
    device::holdStandardDescriptors();
    device::endWhenMemoryIsOut(programName, cannotBegin);
    try {
        return run(argumentCount, argumentValues);
    } catch (const std::exception& error) {
        return complain("The program cannot go on: " + std::string(error.what()) + ".");
    }
}
