// SPDX-License-Identifier: MIT
#include "settings/watching/Watcher.h"

#include <sys/signalfd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <utility>

#include "device/Interruption.h"
#include "platform/foundation/LogSink.h"
#include "platform/foundation/RunLoop.h"
#include "settings/channels/server/Listener.h"

namespace settings {

using platform::Dictionary;
using platform::Result;
using platform::RunLoop;
using platform::Value;
using std::chrono::steady_clock;

namespace {

/// Nothing has been written for so long: a build that nobody has told us of may have ended.
constexpr std::chrono::milliseconds quietTime{120};
/// After so long a file that is open for writing, or is not there, is not waited for.
constexpr std::chrono::seconds longestUnsettled{10};

Value errorValue(const std::optional<BuildError>& error) {
    if (!error) return nullptr;
    return Dictionary{{"file", error->file.empty() ? Value() : Value(error->file)},
                      {"line", error->line > 0 ? Value(error->line) : Value()},
                      {"column", error->column > 0 ? Value(error->column) : Value()},
                      {"text", error->text}};
}

}  // namespace

Watcher::Watcher(WatchOptions options) : options_(std::move(options)), programPaths_(options_.program) {}

Watcher::~Watcher() {
    build_.reset();
    relay_.reset();
    if (signals_) RunLoop::main().unwatch(signals_.get());
}

Result<void> Watcher::run() {
    const auto listener = server::listenOnLoopback(options_.port);
    if (!listener) return std::unexpected(listener.error());
    listener_ = device::Descriptor(*listener);
    const std::uint16_t port = server::portOfListener(*listener);
    if (Result<void> watched = watchSignals(); !watched) return watched;
    if (Result<void> watched = watchFiles(); !watched) return watched;
    relay_ = std::make_unique<ProgramRelay>(
        ProgramRelay::Options{options_.arguments, listener_.get(),
                              [this, port] { return options_.secret(port); }},
        ProgramRelay::Events{[this] { serving(); }, [this](const auto& reason) { refused(reason); },
                             [this](const auto& reason) { down(reason); }});
    candidate_ = programStamps();
    relay_->tell(state());
    relay_->renew();
    RunLoop::main().run();
    if (failure_) return platform::failure(*failure_);
    return {};
}

Result<void> Watcher::watchSignals() {
    // Whoever reads the builds' output may go.
    std::signal(SIGPIPE, SIG_IGN);
    const sigset_t ends = device::endingSignals();
    signals_ = device::Descriptor(pthread_sigmask(SIG_BLOCK, &ends, nullptr) == 0
                                      ? signalfd(-1, &ends, SFD_CLOEXEC | SFD_NONBLOCK)
                                      : -1);
    if (!signals_)
        return platform::failure("Signals cannot be watched: " + std::string(std::strerror(errno)) + ".");
    RunLoop::main().watch(signals_.get(), [] { RunLoop::main().stop(); });
    return {};
}

Result<void> Watcher::watchFiles() {
    auto products = PathWatch::create(
        [this](const std::string& path, Writing writing) { productChanged(path, writing); });
    if (!products) return std::unexpected(products.error());
    products_ = *std::move(products);
    auto places = programPaths_;
    if (!options_.page.empty()) places.push_back(options_.page);
    products_->setPlaces(places, {});
    if (!options_.page.empty()) pageStamps_ = stampsOf({options_.page});
    return {};
}

/// Not before somebody serves: a build's error is shown by the page.
Result<void> Watcher::beginBuilds() {
    auto build = BuildRun::create(
        *options_.build, {[this] { buildBegun(); }, [this](const auto& error) { buildEnded(error); }});
    if (!build) return std::unexpected(build.error());
    build_ = *std::move(build);
    // What was changed since the last build is not told by anybody.
    build_->build();
    return {};
}

void Watcher::productChanged(const std::string& path, Writing writing) {
    if (!unsettledSince_) unsettledSince_ = steady_clock::now();
    if (writing == Writing::Begun) {
        unfinished_.insert(path);
    } else {
        unfinished_.erase(path);
    }
    quiet_.set(quietTime);
}

void Watcher::settled() {
    // It tells when it has ended, and writes in between.
    if (build_ && build_->isRunning()) return;
    const bool isLong = unsettledSince_ && steady_clock::now() - *unsettledSince_ > longestUnsettled;
    if (!isLong && (!unfinished_.empty() || !isComplete())) return quiet_.set(quietTime);
    look();
}

bool Watcher::isComplete() const {
    return std::all_of(options_.program.begin(), options_.program.begin() + 2, [](const std::string& path) {
        std::error_code error;
        return std::filesystem::exists(path, error);
    });
}

void Watcher::look() {
    quiet_.cancel();
    unfinished_.clear();
    unsettledSince_.reset();
    // What a build that has failed has left behind is from here and there.
    if (buildError_) return;
    if (!options_.page.empty()) {
        HostStamps page = stampsOf({options_.page});
        if (page != pageStamps_ && page.contains(options_.page + "/index.html")) {
            pageStamps_ = std::move(page);
            ++pageVersion_;
            tell();
        }
    }
    const HostStamps now = programStamps();
    if (now == refusedStamps_) return;
    if (relay_->isRenewing() ? now == candidate_ : relay_->serving() && now == running_) {
        if (relay_->isRenewing() || !std::exchange(refusal_, std::nullopt)) return;
        // What could not be started is gone again.
        refusedStamps_.reset();
        return tell();
    }
    // Looked at once more when it serves.
    if (relay_->isRenewing() && relay_->isBeyondRecall()) return;
    candidate_ = now;
    relay_->renew();
}

void Watcher::buildBegun() {
    buildError_.reset();
    tell();
}

void Watcher::buildEnded(const std::optional<BuildError>& error) {
    buildError_ = error;
    if (!error) look();
    tell();
}

void Watcher::serving() {
    refusal_.reset();
    refusedStamps_.reset();
    running_ = candidate_;
    std::vector<std::string> more;
    for (const std::string& file : relay_->serving()->loadedFiles()) {
        const bool isKnown = std::ranges::any_of(
            programPaths_, [&](const auto& path) { return file == path || file.starts_with(path + "/"); });
        if (!isKnown) more.push_back(file);
    }
    if (!more.empty()) {
        running_.merge(stampsOf(more));
        programPaths_.insert(programPaths_.end(), more.begin(), more.end());
        auto trees = options_.program;
        if (!options_.page.empty()) trees.push_back(options_.page);
        products_->setPlaces(std::move(trees),
                             {programPaths_.begin() + static_cast<std::ptrdiff_t>(options_.program.size()),
                              programPaths_.end()});
    }
    if (!std::exchange(hasServed_, true)) {
        std::cout << "Quietrix Settings is at http://127.0.0.1:" << server::portOfListener(listener_.get())
                  << "/#secret=" << relay_->secret() << '\n'
                  << std::flush;
        if (options_.build) {
            if (const auto begun = beginBuilds(); !begun) platform::log(begun.error().localizedDescription);
        }
    }
    // What has changed since it was started.
    if (!build_ || !build_->isRunning()) quiet_.set(quietTime);
    tell();
}

void Watcher::refused(const std::string& reason) {
    // Half of a version that was still being written is none.
    if (programStamps() != candidate_) return quiet_.set(quietTime);
    refusedStamps_ = candidate_;
    refusal_ = BuildError{"", 0, 0, reason};
    platform::log("What was built cannot be started: " + reason);
    tell();
}

void Watcher::down(const std::string& reason) {
    if (!hasServed_) {
        failure_ = reason;
        return RunLoop::main().stop();
    }
    platform::log(reason + " It is started again when it has changed.");
    if (programStamps() != candidate_) return quiet_.set(quietTime);
    refusedStamps_ = candidate_;
}

void Watcher::tell() {
    if (relay_) relay_->tell(state());
}

Dictionary Watcher::state() const {
    const bool isBuilding = build_ && build_->isRunning();
    const char* name = isBuilding ? "building" : buildError_ ? "failed" : refusal_ ? "refused" : "ready";
    return {{"state", name},
            {"error", isBuilding ? Value() : errorValue(buildError_ ? buildError_ : refusal_)},
            {"page", pageVersion_}};
}

}  // namespace settings
