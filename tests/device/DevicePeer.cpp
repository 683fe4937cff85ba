// SPDX-License-Identifier: MIT
// Another process of the phone, for tests: what it does is its first argument.
#include <unistd.h>

#include <cstdio>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <vector>

#include "device/DatagramTransport.h"
#include "device/FreshRoot.h"
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

/// facts ROOT: says the serial number.
int sayFacts(Arguments arguments) {
    const device::SettableDeviceFacts facts({}, std::make_shared<device::RootFileSystem>(arguments[0]));
    say(facts.serialNumber());
    return 0;
}

}  // namespace

int main(int argumentCount, char** texts) {
    const std::map<std::string, std::function<int(Arguments)>> commands{
        {"receive", receiveNames}, {"post", postNames}, {"exchange", exchangeNames}, {"write", writeForEver},
        {"lock", holdLock},        {"count", countUp},  {"prepare", prepareRoot},    {"facts", sayFacts}};
    const std::vector<std::string> arguments(texts + 1, texts + argumentCount);
    const auto command = arguments.empty() ? commands.end() : commands.find(arguments[0]);
    if (command == commands.end()) return 2;
    return command->second(Arguments(arguments).subspan(1));
}
