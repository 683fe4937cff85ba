// SPDX-License-Identifier: MIT
// What one change of a profile costs, on the disk, beside writing the same bytes as durably with bare system
// calls, and beside the same change where no state can be kept; and what a reload of an unchanged file costs
// beside one look at the file:
//     profiles-store-bench DIRECTORY
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <string>

#include "bench/ManyProfiles.h"
#include "bench/Rounds.h"
#include "device/RootFileSystem.h"
#include "platform/foundation/Device.h"
#include "platform/foundation/FileManager.h"
#include "platform/foundation/RunLoop.h"
#include "profile/model/QXProfilesManager.h"

namespace {

namespace fs = std::filesystem;
using bench::Clock;
using quietrix::QXProfilesManager;

/// A phone in the directory whose store holds that many profiles.
class Phone {
  public:
    Phone(const fs::path& directory, std::int64_t profiles)
        : root_(directory / std::to_string(profiles)), count_(profiles) {
        fs::create_directories(file().parent_path());
        device_.files = std::make_shared<device::RootFileSystem>(root_.string());
        use();
        if (!platform::FileManager::defaultManager().writeData_toFile(
                bench::manyProfilesFile(profiles), quietrix::profilesPath, platform::Write::Atomically)) {
            std::abort();
        }
        store_->reloadProfiles();
    }
    ~Phone() { fs::remove_all(root_); }
    Phone(const Phone&) = delete;
    Phone& operator=(const Phone&) = delete;

    /// What follows is about this phone, of several.
    void use() const { platform::Device::install(device_); }
    /// Nothing can be kept while a file has the folder's name.
    void keepNothing() const {
        std::ofstream(file().parent_path() / ("." + file().filename().string() + ".history"));
    }
    QXProfilesManager& store() { return *store_; }
    /// Moves a switch of the next profile.
    void change() {
        const auto profile =
            store_->profileByIdentifier_shouldReload(bench::profileIdentifier(turn_++ % count_), false);
        profile->setVibrate(!profile->vibrate());
        store_->updateProfile_success_failure(profile, nullptr, [](const platform::Error&) { std::abort(); });
        platform::RunLoop::main().drain();
    }
    fs::path file() const { return fs::path(root_.string() + std::string(quietrix::profilesPath)); }
    platform::Data contents() const {
        return platform::FileManager::defaultManager().contentsAtPath(quietrix::profilesPath).value();
    }

  private:
    fs::path root_;
    std::int64_t count_;
    std::int64_t turn_ = 0;
    platform::Device device_;
    std::shared_ptr<QXProfilesManager> store_ = std::make_shared<QXProfilesManager>();
};

/// What a durable change of a file cannot do without.
void writeDurably(const platform::Data& bytes, const fs::path& path) {
    const fs::path temporary = path.string() + ".new";
    const auto require = [](bool done) {
        if (!done) std::abort();
    };
    const int file = open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t count = write(file, bytes.data() + done, bytes.size() - done);
        require(count > 0);
        done += static_cast<std::size_t>(count);
    }
    require(fsync(file) == 0 && close(file) == 0 && rename(temporary.c_str(), path.c_str()) == 0);
    const int directory = open(path.parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    require(fsync(directory) == 0 && close(directory) == 0);
}

void compare(const fs::path& directory, std::int64_t count, double target) {
    Phone phone(directory, count);
    const std::string at = bench::grouped(count) + " profiles";
    const auto change = [&] { phone.change(); };
    // The first change of a file that another program wrote lays it out anew; it is not what is measured.
    change();
    const platform::Data same = phone.contents();
    const fs::path bare = phone.file().parent_path() / "bare";
    bench::compare(
        {"A switch changed and durable", at, "the bytes written and synced", bench::atMost(target)},
        bench::Figure::TimesAsLong, bench::timed(Clock::Wall, change),
        bench::timed(Clock::Wall, [&] { writeDurably(same, bare); }));
    {
        Phone without(directory / "without", count);
        without.keepNothing();
        without.change();
        bench::compare({"A switch changed, its state kept", at, "no state kept", bench::atMost(1.05)},
                       bench::Figure::TimesAsLong,
                       bench::timed(Clock::Wall,
                                    [&] {
                                        phone.use();
                                        phone.change();
                                    }),
                       bench::timed(Clock::Wall, [&] {
                           without.use();
                           without.change();
                       }));
        phone.use();
    }
    const std::string path = phone.file().string();
    bench::compare({"Unchanged file reloaded", at, "stat", bench::atMost(3)}, bench::Figure::TimesAsLong,
                   bench::timed(Clock::Processor, [&] { phone.store().reloadProfiles(); }),
                   bench::timed(Clock::Processor, [&] {
                       struct stat status{};
                       if (stat(path.c_str(), &status) != 0) std::abort();
                   }));
}

}  // namespace

int main(int argumentCount, char** argumentValues) {
    if (argumentCount != 2) {
        std::cerr << "usage: profiles-store-bench DIRECTORY\n";
        return 2;
    }
    compare(argumentValues[1], 10, 1.1);
    compare(argumentValues[1], 1000, 1.2);
    compare(argumentValues[1], 100'000, 1.5);
}
