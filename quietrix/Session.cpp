// SPDX-License-Identifier: MIT
#include "quietrix/Session.h"

#include <optional>

#include "device/DatagramTransport.h"
#include "device/EscapedText.h"
#include "device/FreshRoot.h"
#include "device/ProgramPaths.h"
#include "device/StandardErrorLog.h"
#include "device/SystemClock.h"
#include "platform/foundation/DarwinNotificationCenter.h"
#include "platform/foundation/Device.h"
#include "platform/foundation/RunLoop.h"
#include "shell/base/MainSettings.h"

namespace console {

using platform::DarwinNotificationCenter;

namespace {

/// The system log, in lines that move no terminal's cursor.
class VisibleLog : public platform::LogSink {
  public:
    explicit VisibleLog(Output& output) : output_(output) {}
    void write(const std::string& line) override { output_.log(line); }

  private:
    Output& output_;
};

}  // namespace

Session::Session(const std::string& rootDirectory, Output& output)
    : output_(output), files_(std::make_shared<device::RootFileSystem>(rootDirectory)) {
    platform::Device phone;
    phone.files = files_;
    phone.clock = std::make_shared<device::SystemClock>();
    phone.log = std::make_shared<VisibleLog>(output);
    phone.notifications = std::make_shared<device::DatagramTransport>(
        rootDirectory, device::DatagramTransport::OwnPosts::StayAway);
    platform::Device::install(phone);
}

Session::~Session() {
    DarwinNotificationCenter::shared().reset();
    platform::Device::install({});
}

std::expected<Session::Records, Refusal> Session::profiles() {
    auto present = store_->presentProfiles();
    if (!present) return refusal(Status::Failed, present.error().localizedDescription);
    return *std::move(present);
}

std::expected<void, Refusal> Session::change(const Plan& plan, NewRoot newRoot) {
    const auto present = profiles();
    if (!present) return std::unexpected(present.error());
    // Most refusals, and changes that change nothing, need no lock, and a root that nobody made stays unmade.
    const auto first = plan(*present);
    if (!first) return std::unexpected(first.error());
    if (first->empty()) return {};
    if (newRoot == NewRoot::Make) {
        if (const auto ready = makeRootReady(); !ready) return ready;
    }
    const auto connected = connect();
    std::optional<Refusal> refused;
    store_->changeProfiles(
        [&](const Records& records) -> platform::Result<std::vector<Change>> {
            auto changes = plan(records);
            if (changes) return *std::move(changes);
            refused = changes.error();
            return platform::failure(changes.error().message);
        },
        {},
        [&](const platform::Error& error) {
            if (!refused) refused = Refusal{Status::Failed, error.localizedDescription};
        });
    platform::RunLoop::main().drain();
    if (refused) return std::unexpected(*std::move(refused));
    noteUnheard(connected);
    return {};
}

std::expected<quietrix::ProfilesRestoration, Refusal> Session::restore(std::uint64_t number) {
    // Where there is nothing to go back to, nothing is locked or made either.
    if (const auto known = quietrix::ProfileHistory::generationOfNumber(number); !known)
        return refusal(Status::Failed, known.error().localizedDescription);
    const auto connected = connect();
    auto restored = store_->restoreGeneration(number);
    if (!restored) return refusal(Status::Failed, restored.error().localizedDescription);
    platform::RunLoop::main().drain();
    if (!restored->wasPresent) noteUnheard(connected);
    return *std::move(restored);
}

std::expected<void, Refusal> Session::makeRootReady() {
    const auto isNew = device::isUnfilledRoot(files_->rootDirectory());
    if (!isNew) return refusal(Status::Failed, isNew.error().localizedDescription);
    if (!*isNew) return {};
    const auto paths = device::ProgramPaths::ofThisProgram();
    const auto resources = paths.resources();
    const auto bundle = paths.bundle();
    if (!resources || !bundle)
        return refusal(Status::Failed,
                       "A new root cannot be made: what fills it is missing beside the program.");
    const auto made = device::prepareRoot(files_->rootDirectory(), *resources, *bundle);
    if (!made) return refusal(Status::Failed, made.error().localizedDescription);
    return {};
}

platform::Result<void> Session::connect() {
    return DarwinNotificationCenter::shared().connect();
}

void Session::noteUnheard(const platform::Result<void>& connected) {
    if (!connected)
        output_.log("Open screens will not show the change at once. " +
                    connected.error().localizedDescription);
}

std::expected<platform::Value, Refusal> Session::settings() const {
    const std::string path = quietrix::mainSettingsPath();
    // One that cannot be looked at is not one that is missing.
    const auto stamp = files_->stamp(path);
    auto read = stamp ? quietrix::readMainSettings() : std::unexpected(stamp.error());
    if (read) return *std::move(read);
    return refusal(Status::Failed, "The settings file " + device::quotedText(path) +
                                       " cannot be used: " + read.error().localizedDescription);
}

void Session::post(std::string_view notification) {
    noteUnheard(connect());
    platform::CFNotificationCenterPostNotification(platform::CFNotificationCenterGetDarwinNotifyCenter(),
                                                   notification, nullptr, {}, true);
    platform::RunLoop::main().drain();
}

}  // namespace console
