// SPDX-License-Identifier: MIT
// Another process of the phone, for tests: what it does is its first argument.
#include <fcntl.h>
#include <grp.h>
#include <sys/file.h>
#include <unistd.h>

#include <cstdio>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <new>
#include <span>
#include <string>
#include <vector>

#include "device/DatagramTransport.h"
#include "device/FreshRoot.h"
#include "device/MainSettingsFile.h"
#include "device/ProgramStart.h"
#include "device/RootFileSystem.h"
#include "device/SettableDeviceFacts.h"
#include "platform/foundation/RunLoop.h"

namespace {

using Arguments = std::span<const std::string>;

void say(const std::string& line) {
    static std::mutex mutex;
    const std::lock_guard lock(mutex);
    std::fputs((line + "\n").c_str(), stdout);
    std::fflush(stdout);
}

int fail(const platform::Error& error) {
    std::fputs((error.localizedDescription + "\n").c_str(), stderr);
    return 1;
}

void waitForEndOfInput() {
    char byte = 0;
    while (read(STDIN_FILENO, &byte, 1) > 0) continue;
}

void receivePending(const device::DatagramTransport& transport) {
    platform::RunLoop& loop = platform::RunLoop::main();
    loop.addPendingCheck([&] { return transport.hasPending(); });
    loop.drain();
}

/// receive ROOT: says "ready", then each name; at the end of its input it receives what is pending and ends.
int receiveNames(Arguments arguments) {
    device::DatagramTransport transport(arguments[0]);
    if (const auto started = transport.start([](const std::string& name) { say(name); }); !started) {
        return fail(started.error());
    }
    say("ready");
    waitForEndOfInput();
    receivePending(transport);
    return 0;
}

/// post ROOT PREFIX COUNT: posts so many distinct names.
int postNames(Arguments arguments) {
    device::DatagramTransport transport(arguments[0]);
    const int count = std::stoi(arguments[2]);
    for (int i = 0; i < count; ++i) transport.post(arguments[1] + std::to_string(i));
    return 0;
}

/// exchange ROOT PREFIX COUNT: receives as "receive" does, and posts once a line comes in.
int exchangeNames(Arguments arguments) {
    device::DatagramTransport transport(arguments[0]);
    if (const auto started = transport.start([](const std::string& name) { say(name); }); !started) {
        return fail(started.error());
    }
    say("ready");
    char byte = 0;
    while (read(STDIN_FILENO, &byte, 1) > 0 && byte != '\n') continue;
    const int count = std::stoi(arguments[2]);
    for (int i = 0; i < count; ++i) transport.post(arguments[1] + std::to_string(i));
    waitForEndOfInput();
    receivePending(transport);
    return 0;
}

/// write ROOT PATH SIZE: replaces the file for ever, by so many equal letters, the next ones each time.
int writeForEver(Arguments arguments) {
    device::RootFileSystem files(arguments[0]);
    const auto size = static_cast<std::size_t>(std::stoul(arguments[2]));
    say("ready");
    for (unsigned round = 0;; ++round) {
        const platform::Data data(size, static_cast<std::uint8_t>('a' + round % 26));
        if (auto written = files.write(arguments[1], data, platform::Write::Atomically); !written) {
            return fail(written.error());
        }
    }
}

/// overwrite ROOT PATH COUNT LENGTH LENGTH: says "ready" and writes so many texts in place, of the two
/// lengths in turn, each of one letter.
int overwrite(Arguments arguments) {
    device::RootFileSystem files(arguments[0]);
    const unsigned long count = std::stoul(arguments[2]);
    say("ready");
    for (unsigned long round = 0; round < count; ++round) {
        const platform::Data data(std::stoul(arguments[3 + round % 2]),
                                  static_cast<std::uint8_t>('a' + round % 26));
        if (auto written = files.write(arguments[1], data, platform::Write::InPlace); !written)
            return fail(written.error());
    }
    return 0;
}

/// stranger PATH…: becomes another user, locks each of the files and directories for itself as far as it can,
/// says how many it could open, and holds the locks to the end of its input.
int lockAsStranger(Arguments arguments) {
    constexpr uid_t nobody = 65534;
    if (setgroups(0, nullptr) != 0 || setgid(nobody) != 0 || setuid(nobody) != 0) return 1;
    std::vector<device::Descriptor> held;
    for (const std::string& path : arguments) {
        held.emplace_back(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
        if (!held.back()) {
            held.pop_back();
            continue;
        }
        flock(held.back().get(), LOCK_EX | LOCK_NB);
        struct flock whole{};
        whole.l_type = F_RDLCK;
        fcntl(held.back().get(), F_OFD_SETLK, &whole);
    }
    say(std::to_string(held.size()));
    waitForEndOfInput();
    return 0;
}

/// lock ROOT PATH: says "locked" and holds the lock to the end of its input.
int holdLock(Arguments arguments) {
    device::RootFileSystem files(arguments[0]);
    const auto held = files.lockExclusively(arguments[1], 0);
    if (!held) return fail(held.error());
    say("locked");
    waitForEndOfInput();
    return 0;
}

/// count ROOT PATH COUNT: adds 1 to the number in the file so often, under its lock.
int countUp(Arguments arguments) {
    device::RootFileSystem files(arguments[0]);
    for (int i = 0; i < std::stoi(arguments[2]); ++i) {
        const auto held = files.lockExclusively(arguments[1], 60);
        if (!held) return fail(held.error());
        const platform::Data old = files.read(arguments[1]).value_or(platform::Data{'0'});
        const std::string next = std::to_string(std::stoi(std::string(old.begin(), old.end())) + 1);
        const platform::Data data(next.begin(), next.end());
        if (auto written = files.write(arguments[1], data, platform::Write::Atomically); !written) {
            return fail(written.error());
        }
    }
    return 0;
}

/// prepare ROOT RESOURCES BUNDLE
int prepareRoot(Arguments arguments) {
    if (const auto done = device::prepareRoot(arguments[0], arguments[1], arguments[2]); !done)
        return fail(done.error());
    return 0;
}

/// mend ROOT: says "ready", and mends the main settings file once a line comes in.
int mendSettings(Arguments arguments) {
    say("ready");
    char byte = 0;
    if (read(STDIN_FILENO, &byte, 1) != 1) return 1;
    device::MainSettingsFile(arguments[0]).mend();
    return 0;
}

/// hold: closes its standard descriptors, and ends with 0 if they are then what they should be.
int holdStandardDescriptors(Arguments /*arguments*/) {
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) close(descriptor);
    device::holdStandardDescriptors();
    char byte = 0;
    if (read(STDIN_FILENO, &byte, 1) != 0) return 1;
    if (write(STDOUT_FILENO, "x", 1) >= 0) return 2;
    if (write(STDERR_FILENO, "x", 1) != 1) return 3;
    return open("/dev/null", O_RDONLY | O_CLOEXEC) > STDERR_FILENO ? 0 : 4;
}

/// exhaust: ends with 7 when it asks for more memory than there is.
int exhaustMemory(Arguments /*arguments*/) {
    device::endWhenMemoryIsOut("device-peer", 7);
    // What the system's own allocator does when there is no more: the sanitizers' may not return.
    std::get_new_handler()();
    return 0;
}

/// facts ROOT: says the serial number.
int sayFacts(Arguments arguments) {
    const device::SettableDeviceFacts facts({}, std::make_shared<device::RootFileSystem>(arguments[0]));
    say(facts.serialNumber());
    return 0;
}

}  // namespace

int main(int argumentCount, char** texts) {
    const std::map<std::string, std::function<int(Arguments)>> commands{
        {"receive", receiveNames},   {"post", postNames},
        {"exchange", exchangeNames}, {"write", writeForEver},
        {"overwrite", overwrite},    {"stranger", lockAsStranger},
        {"mend", mendSettings},      {"hold", holdStandardDescriptors},
        {"exhaust", exhaustMemory},  {"lock", holdLock},
        {"count", countUp},          {"prepare", prepareRoot},
        {"facts", sayFacts}};
    const std::vector<std::string> arguments(texts + 1, texts + argumentCount);
    const auto command = arguments.empty() ? commands.end() : commands.find(arguments[0]);
    if (command == commands.end()) return 2;
    return command->second(Arguments(arguments).subspan(1));
}
