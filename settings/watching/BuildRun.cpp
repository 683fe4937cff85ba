// SPDX-License-Identifier: MIT
#include "settings/watching/BuildRun.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string_view>
#include <utility>

#include "platform/foundation/RunLoop.h"

namespace settings {

using platform::Result;
using platform::RunLoop;

namespace {

/// An editor saves several files, and each in several steps.
constexpr std::chrono::milliseconds quiet{50};
/// In which a build that is told to end does so, with the compilers that it has started.
constexpr std::chrono::seconds farewell{3};
/// The first error is near the beginning, and what ended the build near the end.
constexpr std::size_t keptOutput = std::size_t{4} << 20;

bool isBelow(std::string_view path, std::string_view directory) {
    return path.starts_with(directory) &&
           (path.size() == directory.size() || path[directory.size()] == '/' || directory.ends_with('/'));
}

/// What a compiler, a linker or an archiver has made is no source, wherever it lies.
bool isMachineCode(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::array<char, 7> head{};
    file.read(head.data(), head.size());
    const std::string_view begin(head.data(), static_cast<std::size_t>(file.gcount()));
    return begin.starts_with("\177ELF") || begin.starts_with("!<arch>");
}

}  // namespace

Result<std::unique_ptr<BuildRun>> BuildRun::create(Options options, Events events) {
    std::unique_ptr<BuildRun> run(new BuildRun(std::move(options), std::move(events)));
    auto watch = PathWatch::create(
        [self = run.get()](const std::string& path, Writing writing) { self->sourceChanged(path, writing); },
        [self = run.get()](const std::string& path) { return self->isNoSource(path); });
    if (!watch) return std::unexpected(watch.error());
    run->watch_ = *std::move(watch);
    run->watch_->setPlaces(run->options_.sources, {});
    return run;
}

BuildRun::BuildRun(Options options, Events events)
    : options_(std::move(options)), events_(std::move(events)) {}

BuildRun::~BuildRun() {
    if (output_) RunLoop::main().unwatch(output_.get());
    if (!process_) return;
    // It knows the programs that it has started; only what does not end then is ended by force.
    process_->signal(SIGTERM);
    process_->waitForEnd(farewell);
}

bool BuildRun::isNoSource(const std::string& path) const {
    const std::string name = std::filesystem::path(path).filename().string();
    if (name.starts_with('.') || name.starts_with('#') || name.ends_with('~')) return true;
    if (name == "build" || name == "node_modules" || name == "__pycache__") return true;
    if (std::ranges::any_of(options_.products, [&](const auto& product) { return isBelow(path, product); }))
        return true;
    std::error_code error;
    return std::filesystem::exists(path + "/CMakeCache.txt", error);
}

void BuildRun::sourceChanged(const std::string& path, Writing writing) {
    if (writing == Writing::Begun || (!path.empty() && isMachineCode(path))) return;
    settled_.set(quiet);
}

void BuildRun::build() {
    if (process_) {
        again_ = true;
    } else {
        start();
    }
}

void BuildRun::start() {
    again_ = false;
    printed_.clear();
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0)
        return events_.ended(BuildError{
            "", 0, 0, std::string("The build could not be started: ") + std::strerror(errno) + "."});
    output_ = device::Descriptor(ends[0]);
    fcntl(output_.get(), F_SETFL, O_NONBLOCK);
    const device::Descriptor written(ends[1]);
    // Errors are looked for by their English names.
    process_ = std::make_unique<ChildProcess>(
        std::vector<std::string>{"/bin/sh", "-c", "export LC_ALL=C.UTF-8\n" + options_.command},
        std::vector<ChildProcess::Given>{{written.get(), STDOUT_FILENO}, {written.get(), STDERR_FILENO}},
        [this](int status) {
            // What the process has called is not its own end.
            platform::dispatchMain([this, status] { finish(status); });
        });
    if (const auto started = process_->started(); !started) {
        process_.reset();
        output_ = device::Descriptor();
        return events_.ended(BuildError{"", 0, 0, started.error().localizedDescription});
    }
    RunLoop::main().watch(output_.get(), [this] { readOutput(); });
    events_.begun();
}

void BuildRun::readOutput() {
    std::array<char, 65536> bytes{};
    for (;;) {
        const ssize_t count = read(output_.get(), bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) {
            if (count == 0) RunLoop::main().unwatch(output_.get());
            return;
        }
        const std::string_view piece(bytes.data(), static_cast<std::size_t>(count));
        // Whoever does not read it is not told.
        [[maybe_unused]] const ssize_t told = write(STDERR_FILENO, piece.data(), piece.size());
        printed_ += piece;
        if (printed_.size() > keptOutput) printed_.erase(keptOutput / 2, printed_.size() - keptOutput);
    }
}

void BuildRun::finish(int status) {
    readOutput();
    RunLoop::main().unwatch(output_.get());
    output_ = device::Descriptor();
    process_.reset();
    // What was built was overtaken; the next one tells.
    if (again_) return start();
    events_.ended(status == 0 ? std::nullopt : std::optional(errorOf(status)));
}

BuildError BuildRun::errorOf(int status) const {
    if (auto error = firstErrorIn(printed_)) return *error;
    std::string text = "The build " + ChildProcess::sentenceOf(status);
    const std::string last = lastLineOf(printed_);
    return {"", 0, 0, text + (last.empty() ? "." : ": " + last)};
}

}  // namespace settings
