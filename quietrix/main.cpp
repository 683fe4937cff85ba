// SPDX-License-Identifier: MIT
#include <clocale>
#include <csignal>
#include <exception>
#include <iostream>
#include <string>
#include <vector>

#include "device/ProgramStart.h"
#include "quietrix/Commands.h"

namespace {

int run(const std::vector<std::string>& arguments) {
    console::Output output(console::asksForJSON(arguments) ? console::Format::JSON : console::Format::Text);
    const auto line = console::parsedCommandLine(arguments);
    if (!line) return static_cast<int>(output.print(line.error()));
    console::Session session(line->rootDirectory, output);
    return static_cast<int>(output.print(line->run(session)));
}

}  // namespace

int main(int argumentCount, char** argumentValues) {
    device::holdStandardDescriptors();
    device::endWhenMemoryIsOut("quietrix", static_cast<int>(console::Status::Failed));
    // Output that nobody reads is noticed where it is written.
    std::signal(SIGPIPE, SIG_IGN);
    // For the width of characters; texts are UTF-8 in every locale.
    std::setlocale(LC_CTYPE, "C.UTF-8");  // NOLINT(concurrency-mt-unsafe)
    try {
        return run(std::vector<std::string>(argumentValues + 1, argumentValues + argumentCount));
    } catch (const std::exception& error) {
        std::cerr << "quietrix: The program cannot go on: " << error.what() << '\n';
        return static_cast<int>(console::Status::Failed);
    }
}
