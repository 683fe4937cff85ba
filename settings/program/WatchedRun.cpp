// SPDX-License-Identifier: MIT
#include "settings/program/WatchedRun.h"

#include <fcntl.h>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <system_error>
#include <utility>
#include <vector>

#include "device/StandardErrorLog.h"
#include "platform/foundation/Device.h"
#include "platform/foundation/LogSink.h"
#include "platform/foundation/RunLoop.h"
#include "settings/channels/Serve.h"
#include "settings/channels/Session.h"
#include "settings/watching/ControlLine.h"
#include "settings/watching/ServedProgram.h"
#include "settings/watching/Watcher.h"

namespace settings {

namespace fs = std::filesystem;
using platform::Array;
using platform::Dictionary;
using platform::Result;
using platform::RunLoop;
using platform::Value;

namespace {

std::string wholePath(const std::string& path) {
    std::error_code error;
    const fs::path whole = fs::weakly_canonical(fs::absolute(path), error);
    return error ? path : whole.string();
}

/// How to start the program that is watched: as this one was, but for the watching.
std::vector<std::string> argumentsOfWatched(const CommandLine& line) {
    std::vector<std::string> arguments{device::ProgramPaths::ownFile(),
                                       "serve",
                                       "--watched",
                                       "--root",
                                       line.rootDirectory,
                                       "--bundle",
                                       line.bundleDirectory};
    for (std::string& pair : line.device.pairs()) {
        arguments.emplace_back("--device");
        arguments.push_back(std::move(pair));
    }
    return arguments;
}

/// Draws what is shown once, as the first page will have it: what cannot be drawn ends the program before
/// anybody relies on it.
void draw(Application& application) {
    Session(application).answer(R"({"do":"state"})");
}

/// A program between its watcher and its pages.
class WatchedRun {
  public:
    WatchedRun(Application& application, PhoneSetup& phone)
        : application_(application), phone_(phone), channel_(application, phone.files()) {}
    ~WatchedRun() { RunLoop::main().unwatch(line_.descriptor()); }
    WatchedRun(const WatchedRun&) = delete;
    WatchedRun& operator=(const WatchedRun&) = delete;

    /// False when the watcher has gone before this program was needed.
    Result<bool> start(const std::string& pageDirectory, const std::string& rootDirectory);
    void run() { channel_.runUntilEnded(); }

  private:
    void goOn(const Value& go);
    void takeDevice(const Value& handover);
    void takeFaults(const Value& handover);
    Dictionary handover();
    void show(const Value& build, const std::optional<std::string>& pathEnded);
    void hear();

    Application& application_;
    PhoneSetup& phone_;
    Serve channel_;
    ControlLine line_{device::Descriptor(ServedProgram::controlDescriptor)};
};

Result<bool> WatchedRun::start(const std::string& pageDirectory, const std::string& rootDirectory) {
    for (const int given : {ServedProgram::controlDescriptor, ServedProgram::listenerDescriptor}) {
        if (fcntl(given, F_SETFD, FD_CLOEXEC) != 0)
            return platform::failure("This is for programs that a watcher has started.");
    }
    draw(application_);
    const auto problem = application_.bundleProblem();
    line_.send({{"ready", true}, {"problem", problem ? Value(*problem) : Value()}});
    const auto message = line_.wait();
    if (!message) return false;
    const Value go = (*message)["go"];
    goOn(go);

    ServeOptions options;
    options.pageDirectory = pageDirectory;
    options.rootDirectory = rootDirectory;
    options.listener = ServedProgram::listenerDescriptor;
    options.secret = go["secret"].stringOr();
    options.runtimeDirectory = device::runtimeDirectory().value_or("");
    if (auto started = channel_.start(options); !started) return std::unexpected(started.error());
    RunLoop::main().watch(line_.descriptor(), [this] { hear(); });
    line_.send({{"serving", true}});
    return true;
}

void WatchedRun::goOn(const Value& go) {
    const Value handover = go["handover"];
    std::optional<std::string> ended;
    if (go["pathEnded"].string() != nullptr) ended = go["pathEnded"].stringOr();
    if (!handover.isNil()) {
        takeDevice(handover);
        ended = application_.takeOver(handover["application"]);
        takeFaults(handover);
    }
    show(go["build"], ended);
    draw(application_);
}

void WatchedRun::takeDevice(const Value& handover) {
    std::vector<std::string> pairs;
    if (const Value given = handover["device"]; given.array() != nullptr) {
        for (const Value& pair : *given.array()) pairs.push_back(pair.stringOr());
    }
    if (pairs.empty() || pairs == phone_.devicePairs()) return;
    const auto changed = application_.changeDevice(pairs);
    if (!changed) platform::log(changed.error().localizedDescription);
}

void WatchedRun::takeFaults(const Value& handover) {
    device::Faults& faults = phone_.faults();
    faults.setDelay(std::chrono::milliseconds(handover["faultMilliseconds"].integer().value_or(0)));
    const Value names = handover["faults"];
    if (names.array() == nullptr) return;
    for (const Value& name : *names.array()) {
        if (const auto fault = device::Faults::named(name.stringOr())) faults.begin(*fault);
    }
}

Dictionary WatchedRun::handover() {
    Array device;
    for (std::string& pair : phone_.devicePairs()) device.emplace_back(std::move(pair));
    Array faults;
    for (const device::Fault fault : phone_.faults().active())
        faults.emplace_back(device::Faults::nameOf(fault));
    return {{"application", application_.handOver()},
            {"device", std::move(device)},
            {"faults", std::move(faults)},
            {"faultMilliseconds", phone_.faults().delay().count()}};
}

void WatchedRun::show(const Value& build, const std::optional<std::string>& pathEnded) {
    if (build.dictionary() == nullptr) return;
    Dictionary shown = *build.dictionary();
    shown["pathEnded"] = pathEnded ? Value(*pathEnded) : Value();
    application_.setBuild(std::move(shown));
}

void WatchedRun::hear() {
    for (const Value& message : line_.receive()) {
        if (message["leave"].isTrue()) {
            channel_.hold();
            line_.send({{"handover", handover()}});
            return channel_.leave();
        }
        const Value build = message["build"];
        if (build.isNil()) continue;
        // Where the path ended is told until the next build.
        const Value before = application_.build()["pathEnded"];
        const bool isNew = build["state"].stringOr() != "ready";
        show(build, isNew || before.isNil() ? std::nullopt : std::optional(before.stringOr()));
    }
    if (line_.hasEnded()) RunLoop::main().stop();
}

}  // namespace

Result<void> watchPrograms(const CommandLine& line, const device::ProgramPaths& paths) {
    platform::Device machine;
    machine.log = std::make_shared<device::StandardErrorLog>("quietrix-settings");
    platform::Device::install(std::move(machine));
    WatchOptions options;
    options.arguments = argumentsOfWatched(line);
    options.port = line.port;
    options.secret = [&line](std::uint16_t port) {
        // No page can be waiting at a port that is another one with each start.
        const std::string runtime = line.port == 0 ? "" : device::runtimeDirectory().value_or("");
        return server::keptSecret({runtime, line.rootDirectory, port},
                                  line.newSecret ? server::OldSecret::Forget : server::OldSecret::TakeOver);
    };
    options.program = {device::ProgramPaths::ownFile(), wholePath(line.bundleDirectory),
                       wholePath(paths.resources().value_or("")), paths.systemShell()};
    options.page = paths.page().value_or("");
    if (!line.watch.build.empty()) {
        BuildRun::Options build;
        build.command = line.watch.build;
        for (const auto& directory :
             line.watch.sources.empty() ? std::vector<std::string>{"."} : line.watch.sources)
            build.sources.push_back(wholePath(directory));
        build.products = options.program;
        build.products.push_back(wholePath(line.rootDirectory));
        if (!options.page.empty()) build.products.push_back(options.page);
        options.build = std::move(build);
    }
    return Watcher(std::move(options)).run();
}

int serveWatched(Application& application, PhoneSetup& phone, const std::string& pageDirectory,
                 const std::string& rootDirectory) {
    WatchedRun run(application, phone);
    const auto started = run.start(pageDirectory, rootDirectory);
    if (!started) {
        platform::log(started.error().localizedDescription);
        return 2;
    }
    if (*started) run.run();
    return 0;
}

}  // namespace settings
