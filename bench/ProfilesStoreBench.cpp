// SPDX-License-Identifier: MIT
// What a change of one profile costs beside writing the same bytes in the same durable way, and what a reload
// of an unchanged file costs. "ratio" is the mean of the change over the mean of the bare write, both in this
// very run and turn by turn, so that neither meets a busier disk than the other.
#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

#include "device/RootFileSystem.h"
#include "platform/foundation/Device.h"
#include "platform/foundation/FileManager.h"
#include "platform/foundation/PropertyList.h"
#include "platform/foundation/RunLoop.h"
#include "profile/model/ProfilesFile.h"
#include "profile/model/QXProfilesManager.h"

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;
using quietrix::QXProfile;
using quietrix::QXProfilesManager;

constexpr std::string_view bareFile = "/var/mobile/Library/Preferences/bare";

std::string identifier(std::int64_t number) {
    return "profile-" + std::to_string(number);
}

/// A phone in a temporary directory whose store holds that many profiles.
class Phone {
  public:
    explicit Phone(std::int64_t profiles) {
        std::string name = (fs::temp_directory_path() / "store-bench-XXXXXX").string();
        root_ = mkdtemp(name.data());
        fs::create_directories(root_ / "var/mobile/Library/Preferences");
        platform::Device phone;
        phone.files = std::make_shared<device::RootFileSystem>(root_.string());
        platform::Device::install(phone);
        platform::Array all;
        for (std::int64_t i = 0; i < profiles; ++i) {
            QXProfile profile;
            profile.setIdentifier(identifier(i));
            profile.setTitle("Profile " + std::to_string(i));
            all.emplace_back(profile.storedValues());
        }
        const auto bytes = platform::PropertyListSerialization::dataWithPropertyList(
            platform::Dictionary{{"format", 1}, {"profiles", std::move(all)}},
            platform::PropertyListFormat::Binary);
        write(*bytes, quietrix::profilesPath);
        store_->reloadProfiles();
    }
    ~Phone() { fs::remove_all(root_); }
    Phone(const Phone&) = delete;
    Phone& operator=(const Phone&) = delete;

    QXProfilesManager& store() { return *store_; }
    static void write(const platform::Data& bytes, std::string_view path) {
        if (!platform::FileManager::defaultManager().writeData_toFile(bytes, path,
                                                                      platform::Write::Atomically)) {
            std::abort();
        }
    }
    static platform::Data contents() {
        return platform::FileManager::defaultManager().contentsAtPath(quietrix::profilesPath).value();
    }

  private:
    fs::path root_;
    std::shared_ptr<QXProfilesManager> store_ = std::make_shared<QXProfilesManager>();
};

double since(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

void update(benchmark::State& state) {
    Phone phone(state.range(0));
    const auto failed = [](const platform::Error&) { std::abort(); };
    const auto change = [&](std::int64_t turn) {
        const auto profile =
            phone.store().profileByIdentifier_shouldReload(identifier(turn % state.range(0)), false);
        profile->setTitle("Turn " + std::to_string(turn));
        phone.store().updateProfile_success_failure(profile, nullptr, failed);
    };
    // The first change of a file that another program wrote lays it out anew; it is not what is measured.
    change(0);
    double changing = 0;
    double writing = 0;
    std::int64_t turn = 1;
    for (auto _ : state) {
        auto start = Clock::now();
        change(turn++);
        const double taken = since(start);
        changing += taken;
        state.SetIterationTime(taken);
        const platform::Data same = Phone::contents();
        start = Clock::now();
        Phone::write(same, bareFile);
        writing += since(start);
    }
    platform::RunLoop::main().drain();
    state.counters["ratio"] = changing / writing;
    state.counters["bytes"] = static_cast<double>(Phone::contents().size());
}
BENCHMARK(update)->Arg(10)->Arg(1000)->Arg(10000)->Arg(100000)->UseManualTime()->Unit(
    benchmark::kMillisecond);

void reloadUnchanged(benchmark::State& state) {
    Phone phone(state.range(0));
    for (auto _ : state) phone.store().reloadProfiles();
}
BENCHMARK(reloadUnchanged)->Arg(10)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMicrosecond);

void firstLook(benchmark::State& state) {
    Phone phone(state.range(0));
    const auto bytes = Phone::contents();
    for (auto _ : state) {
        QXProfilesManager store;
        benchmark::DoNotOptimize(
            store.profileByIdentifier_shouldReload(identifier(state.range(0) / 2), false));
    }
    state.counters["bytes"] = static_cast<double>(bytes.size());
}
BENCHMARK(firstLook)->Arg(10)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

void allRecords(benchmark::State& state) {
    Phone phone(state.range(0));
    for (auto _ : state) {
        QXProfilesManager store;
        benchmark::DoNotOptimize(store.enabledProfiles());
    }
}
BENCHMARK(allRecords)->Arg(10)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
