// SPDX-License-Identifier: MIT
#include <unistd.h>

#include <iostream>
#include <string>
#include <vector>

#include "settings/Application.h"
#include "settings/CommandLine.h"
#include "settings/Drive.h"
#include "settings/PhoneSetup.h"
#include "settings/ProgramPaths.h"
#include "settings/Serve.h"
#include "settings/Session.h"

namespace {

constexpr int cannotBegin = 2;

int complain(const std::string& reason) {
    std::cerr << "quietrix-settings: " << reason << '\n';
    return cannotBegin;
}

int drive(settings::Application& application) {
    settings::Session session(application);
    return settings::Drive(session, STDIN_FILENO, STDOUT_FILENO).run();
}

int serve(settings::Application& application, const settings::PhoneSetup& phone,
          const settings::ProgramPaths& paths, const settings::CommandLine& line) {
    settings::Serve channel(application, phone.files());
    // Without the page there still is the protocol; the server answers "not found" for the files.
    const auto served = channel.run(line.port, paths.page().value_or(""));
    return served ? 0 : complain(served.error().localizedDescription);
}

}  // namespace

int main(int argumentCount, char** argumentValues) {
    const auto paths = settings::ProgramPaths::ofThisProgram();
    const auto line = settings::parseCommandLine(
        std::vector<std::string>(argumentValues + 1, argumentValues + argumentCount), paths);
    if (!line) {
        (line.error().status == 0 ? std::cout : std::cerr) << line.error().text;
        return line.error().status;
    }
    const auto resources = paths.resources();
    if (!resources) return complain("The application's own files are missing beside the program.");

    const auto phone = settings::PhoneSetup::create(
        {line->rootDirectory, line->bundleDirectory, *resources, line->device, paths.systemShell()});
    if (!phone) return complain(phone.error().localizedDescription);
    settings::Application application((*phone)->bundlePath(), (*phone)->clock());
    application.start();
    return line->channel == settings::Channel::Drive ? drive(application)
                                                     : serve(application, **phone, paths, *line);
}
