// SPDX-License-Identifier: MIT
// The system shell as a process: SpringBoard ROOT [--restarted]. It is a child of the Settings application,
// which holds the other end of its standard input: the shell lives as long as that is open. A line on
// standard output says that it observes.
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <array>
#include <exception>
#include <iostream>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "device/DatagramTransport.h"
#include "device/PhonePaths.h"
#include "device/ProgramStart.h"
#include "device/RootFileSystem.h"
#include "device/StandardErrorLog.h"
#include "device/SystemClock.h"
#include "platform/foundation/DarwinNotificationCenter.h"
#include "platform/foundation/Device.h"
#include "platform/foundation/RunLoop.h"
#include "springboard/SpringBoard.h"

namespace {

using platform::RunLoop;

constexpr int cannotBegin = 2;

int complain(const std::string& reason) {
    std::cerr << "SpringBoard: " << reason << '\n';
    return cannotBegin;
}

bool isInputHungUp() {
    pollfd input{STDIN_FILENO, 0, 0};
    return poll(&input, 1, 0) > 0;
}

void endWithInput() {
    std::array<char, 256> bytes{};
    if (read(STDIN_FILENO, bytes.data(), bytes.size()) <= 0) RunLoop::main().stop();
}

platform::Device phone(const std::string& root) {
    platform::Device device;
    device.log = std::make_shared<device::StandardErrorLog>("SpringBoard");
    device.files = std::make_shared<device::RootFileSystem>(root);
    device.clock = std::make_shared<device::SystemClock>();
    device.notifications = std::make_shared<device::DatagramTransport>(root);
    return device;
}

int live(std::string_view option) {
    const auto& files = *platform::Device::current().files;
    if (const auto connected = platform::DarwinNotificationCenter::shared().connect(); !connected)
        return complain(connected.error().localizedDescription);
    springboard::NotificationLog log(files.hostPath(device::phonePaths::shellLog));
    springboard::SpringBoard shell(log);
    shell.observe();
    if (option == "--restarted") springboard::SpringBoard::postAppliedStateChanged();
    RunLoop::main().watch(STDIN_FILENO, endWithInput);
    std::cout << "ready\n" << std::flush;
    RunLoop::main().run();
    platform::DarwinNotificationCenter::shared().reset();
    return 0;
}

int run(const std::vector<std::string>& arguments) {
    if (arguments.empty() || arguments.size() > 2 || (arguments.size() == 2 && arguments[1] != "--restarted"))
        return complain("usage: SpringBoard ROOT [--restarted]");
    platform::Device::install(phone(arguments[0]));
    static_cast<void>(platform::Device::current().files->createDirectory(device::phonePaths::temporaryFiles));
    const int status = live(arguments.size() == 2 ? arguments[1] : std::string_view());
    platform::Device::install({});
    return status;
}

}  // namespace

int main(int argumentCount, char** argumentValues) {
    // Killed with the application. One that was gone before this line has closed the input by then, and
    // nothing may be left in a root that nobody uses any more.
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (isInputHungUp()) return 0;
    device::holdStandardDescriptors();
    device::endWhenMemoryIsOut("SpringBoard", cannotBegin);
    try {
        return run(std::vector<std::string>(argumentValues + 1, argumentValues + argumentCount));
    } catch (const std::exception& error) {
        return complain(error.what());
    }
}
