// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <stdlib.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>

#include "platform/foundation/RunLoop.h"
#include "settings/watching/Alarm.h"
#include "settings/watching/PathWatch.h"

namespace settings {
namespace {

namespace fs = std::filesystem;
using platform::RunLoop;

class PathWatchTest : public testing::Test {
  protected:
    PathWatchTest() {
        RunLoop::main().reset();
        std::string name = (fs::temp_directory_path() / "path-watch-XXXXXX").string();
        folder_ = mkdtemp(name.data());
    }
    ~PathWatchTest() override {
        watch_.reset();
        RunLoop::main().reset();
        fs::remove_all(folder_);
    }

    void watch(std::vector<std::string> trees, std::vector<std::string> files = {}) {
        auto watch = PathWatch::create(
            [this](const std::string& path, Writing writing) {
                seen_.emplace_back(path, writing);
                if (path == awaited_ && writing == Writing::Done) RunLoop::main().stop();
            },
            [](const std::string& path) { return path.ends_with(".ignored"); });
        ASSERT_TRUE(watch);
        watch_ = *std::move(watch);
        watch_->setPlaces(std::move(trees), std::move(files));
    }
    void write(const fs::path& path) { std::ofstream(path) << "written"; }
    /// Whether a change of the path is told, and finished.
    bool isTold(const fs::path& path) {
        awaited_ = path.string();
        bool isLate = false;
        Alarm late([&] {
            isLate = true;
            RunLoop::main().stop();
        });
        late.set(std::chrono::seconds(30));
        RunLoop::main().run();
        return !isLate;
    }

    fs::path folder_;
    std::vector<std::pair<std::string, Writing>> seen_;
    std::string awaited_;
    std::unique_ptr<PathWatch> watch_;
};

TEST_F(PathWatchTest, Tree_fileBeingWritten_isToldAsBegunUntilItIsClosed) {
    watch({folder_});
    const auto path = folder_ / "file";
    {
        std::ofstream file(path);
        file << "half" << std::flush;
    }
    ASSERT_TRUE(isTold(path));
    EXPECT_EQ(seen_.front(), std::pair(path.string(), Writing::Begun));
    EXPECT_EQ(seen_.back(), std::pair(path.string(), Writing::Done));
}

TEST_F(PathWatchTest, Tree_newFolder_isWatchedToo) {
    watch({folder_});
    fs::create_directory(folder_ / "inner");
    ASSERT_TRUE(isTold(folder_ / "inner"));
    write(folder_ / "inner" / "file");
    EXPECT_TRUE(isTold(folder_ / "inner" / "file"));
}

TEST_F(PathWatchTest, Tree_thatIsNotThereYet_isToldWhenItComes) {
    const auto tree = folder_ / "not" / "yet";
    watch({tree});
    fs::create_directory(folder_ / "not");
    ASSERT_TRUE(isTold(folder_ / "not"));
    fs::create_directory(tree);
    ASSERT_TRUE(isTold(tree));
    write(tree / "file");
    EXPECT_TRUE(isTold(tree / "file"));
}

TEST_F(PathWatchTest, Tree_removedAndMadeAnew_isWatchedAgain) {
    const auto tree = folder_ / "tree";
    fs::create_directory(tree);
    watch({tree});
    fs::remove(tree);
    ASSERT_TRUE(isTold(tree));
    fs::create_directory(tree);
    ASSERT_TRUE(isTold(tree));
    write(tree / "file");
    EXPECT_TRUE(isTold(tree / "file"));
}

TEST_F(PathWatchTest, File_itsNeighboursAndWhatIsIgnored_areNotTold) {
    fs::create_directory(folder_ / "tree");
    watch({folder_ / "tree"}, {folder_ / "file"});
    write(folder_ / "neighbour");
    write(folder_ / "tree" / "file.ignored");
    write(folder_ / "file");
    ASSERT_TRUE(isTold(folder_ / "file"));
    for (const auto& [path, writing] : seen_) EXPECT_EQ(path, (folder_ / "file").string());
    fs::rename(folder_ / "neighbour", folder_ / "file");
    EXPECT_TRUE(isTold(folder_ / "file"));
}

}  // namespace
}  // namespace settings
