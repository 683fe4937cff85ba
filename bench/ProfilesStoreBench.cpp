// SPDX-License-Identifier: MIT
// What a change of one profile costs beside writing the same bytes in the same durable way, and what a reload
// of an unchanged file costs. "ratio" is the mean of the change over the mean of the bare write, both in this
// very run and turn by turn, so that neither meets a busier disk than the other. The benchmarks in memory
// compare what the store does, which is to edit the file's bytes, with what it could do instead: read all of
// them to values and write the values anew. Their ratios say how many times longer that takes.
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
using quietrix::ProfilesFile;
using quietrix::QXProfile;
using quietrix::QXProfilesManager;

constexpr std::string_view bareFile = "/var/mobile/Library/Preferences/bare";

std::string identifier(std::int64_t number) {
    return "profile-" + std::to_string(number);
}

/// A file of that many profiles.
platform::Data fileBytes(std::int64_t profiles) {
    platform::Array all;
    for (std::int64_t i = 0; i < profiles; ++i) {
        QXProfile profile;
        profile.setIdentifier(identifier(i));
        profile.setTitle("Profile " + std::to_string(i));
        all.emplace_back(profile.storedValues());
    }
    return platform::PropertyListSerialization::dataWithPropertyList(
               platform::Dictionary{{"format", 1}, {"profiles", std::move(all)}},
               platform::PropertyListFormat::Binary)
        .value();
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
        write(fileBytes(profiles), quietrix::profilesPath);
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

/// The time that the work takes, and what it gave goes within it.
template <class Work>
double timeOf(Work work) {
    const auto start = Clock::now();
    benchmark::DoNotOptimize(work());
    return since(start);
}

void changeInMemory(benchmark::State& state) {
    const platform::Data start = fileBytes(state.range(0));
    auto file = ProfilesFile::parse(start).value();
    const std::string name = identifier(state.range(0) / 2);
    double editing = 0;
    double reading = 0;
    double writing = 0;
    std::int64_t turn = 0;
    for (auto _ : state) {
        platform::Dictionary values = file.values(file.find(name).value());
        values.insert_or_assign("title", "Turn " + std::to_string(turn++));
        const double taken =
            timeOf([&] { return file = file.updating(file.find(name).value(), values).value(), 0; });
        editing += taken;
        state.SetIterationTime(taken);
        platform::Value root;
        reading += timeOf([&] {
            root = platform::PropertyListSerialization::propertyListWithData(start).value();
            return 0;
        });
        writing += timeOf([&] {
            return platform::PropertyListSerialization::dataWithPropertyList(
                root, platform::PropertyListFormat::Binary);
        });
    }
    state.counters["bytes"] = static_cast<double>(start.size());
    state.counters["readingAndWriting"] = (reading + writing) / editing;
    state.counters["writingAlone"] = writing / editing;
}
BENCHMARK(changeInMemory)->Arg(10)->Arg(1000)->Arg(100000)->UseManualTime()->Unit(benchmark::kMicrosecond);

void firstLookInMemory(benchmark::State& state) {
    const platform::Data bytes = fileBytes(state.range(0));
    const std::string name = identifier(state.range(0) / 2);
    double looking = 0;
    double reading = 0;
    for (auto _ : state) {
        const double taken = timeOf([&] {
            const ProfilesFile file = ProfilesFile::parse(bytes).value();
            return file.values(file.find(name).value());
        });
        looking += taken;
        state.SetIterationTime(taken);
        reading += timeOf([&] { return platform::PropertyListSerialization::propertyListWithData(bytes); });
    }
    state.counters["reading"] = reading / looking;
}
BENCHMARK(firstLookInMemory)->Arg(10)->Arg(1000)->Arg(100000)->UseManualTime()->Unit(benchmark::kMicrosecond);

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
