// SPDX-License-Identifier: MIT
// What one change of a profile costs, on the disk, beside writing the same bytes as durably with bare system
// calls, and what a reload of an unchanged file costs beside one look at the file:
//     profiles-store-bench DIRECTORY
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
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
    Phone(const fs::path& directory, std::int64_t profiles) : root_(directory / std::to_string(profiles)) {
        fs::create_directories(file().parent_path());
        platform::Device phone;
        phone.files = std::make_shared<device::RootFileSystem>(root_.string());
        platform::Device::install(phone);
        if (!platform::FileManager::defaultManager().writeData_toFile(
                bench::manyProfilesFile(profiles), quietrix::profilesPath, platform::Write::Atomically)) {
            std::abort();
        }
        store_->reloadProfiles();
    }
    ~Phone() { fs::remove_all(root_); }
    Phone(const Phone&) = delete;
    Phone& operator=(const Phone&) = delete;

    QXProfilesManager& store() { return *store_; }
    fs::path file() const { return fs::path(root_.string() + std::string(quietrix::profilesPath)); }
    platform::Data contents() const {
        return platform::FileManager::defaultManager().contentsAtPath(quietrix::profilesPath).value();
    }

  private:
    fs::path root_;
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
    std::int64_t turn = 0;
    const auto change = [&] {
        const auto profile =
            phone.store().profileByIdentifier_shouldReload(bench::profileIdentifier(turn++ % count), false);
        profile->setVibrate(!profile->vibrate());
        phone.store().updateProfile_success_failure(profile, nullptr,
                                                    [](const platform::Error&) { std::abort(); });
        platform::RunLoop::main().drain();
    };
    // The first change of a file that another program wrote lays it out anew; it is not what is measured.
    change();
    const platform::Data same = phone.contents();
    const fs::path bare = phone.file().parent_path() / "bare";
    bench::compare(
        {"A switch changed and durable", at, "the bytes written and synced", bench::atMost(target)},
        bench::Figure::TimesAsLong, bench::timed(Clock::Wall, change),
        bench::timed(Clock::Wall, [&] { writeDurably(same, bare); }));
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
