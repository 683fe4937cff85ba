// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "platform/foundation/Device.h"
#include "platform/foundation/FileManager.h"
#include "tests/doubles/Phone.h"
#include "tests/doubles/Required.h"

namespace {

using doubles::errorOf;
using doubles::required;
using platform::Data;
using platform::Dictionary;
using platform::FileManager;
using platform::stringByAppendingPathComponent;
using platform::Write;

class FileManagerTest : public testing::Test {
  protected:
    doubles::Phone phone;
    FileManager& manager = FileManager::defaultManager();
    const Data bytes{1, 2, 3};
};

TEST_F(FileManagerTest, changes_areWrittenToTheJournalWithTheirOutcome) {
    phone.files->failWrites("No space left on device", "/full");
    EXPECT_TRUE(manager.writeData_toFile(bytes, "/a", Write::Atomically));
    EXPECT_FALSE(manager.writeData_toFile(bytes, "/full", Write::Atomically));
    EXPECT_TRUE(manager.removeItemAtPath("/a"));
    EXPECT_FALSE(manager.removeItemAtPath("/a"));
    EXPECT_EQ(phone.takeEvents(),
              (std::vector<Dictionary>{{{"event", "write"}, {"path", "/a"}, {"ok", true}},
                                       {{"event", "write"}, {"path", "/full"}, {"ok", false}},
                                       {{"event", "removeFile"}, {"path", "/a"}, {"ok", true}},
                                       {{"event", "removeFile"}, {"path", "/a"}, {"ok", false}}}));
}

TEST_F(FileManagerTest, reading_goesToTheDevicesFileSystem) {
    phone.files->put("/d/f", "text");
    EXPECT_EQ(*required(manager.contentsAtPath("/d/f")), (Data{'t', 'e', 'x', 't'}));
    EXPECT_TRUE(manager.fileExistsAtPath("/d/f"));
    EXPECT_TRUE(manager.directoryExistsAtPath("/d"));
    EXPECT_EQ(*required(manager.contentsOfDirectoryAtPath("/d")), std::vector<std::string>{"f"});
    EXPECT_TRUE(phone.takeEvents().empty());
}

TEST_F(FileManagerTest, withoutAFileSystem_everyOperationFailsAndNamesTheFile) {
    phone.files.reset();
    phone.install();
    const auto read = manager.contentsAtPath("/a");
    ASSERT_FALSE(read);
    EXPECT_EQ(errorOf(read), "The file \"/a\" could not be read: the device has no file system.");
    EXPECT_FALSE(manager.writeData_toFile(bytes, "/a", Write::InPlace));
    EXPECT_FALSE(manager.removeItemAtPath("/a"));
    EXPECT_FALSE(manager.createDirectoryAtPath("/a"));
    EXPECT_FALSE(manager.contentsOfDirectoryAtPath("/a"));
    EXPECT_FALSE(manager.lockExclusively("/a", 0));
    EXPECT_FALSE(manager.openHistory("/a", platform::Missing::Leave));
    EXPECT_FALSE(manager.fileExistsAtPath("/a"));
    EXPECT_FALSE(manager.directoryExistsAtPath("/a"));
    EXPECT_FALSE(manager.stampAtPath("/a"));
}

TEST(PathComponent, appended_hasOneSlashBetween) {
    EXPECT_EQ(stringByAppendingPathComponent("/a", "b"), "/a/b");
    EXPECT_EQ(stringByAppendingPathComponent("/a/", "b"), "/a/b");
    EXPECT_EQ(stringByAppendingPathComponent("/a//", "/b/c"), "/a/b/c");
    EXPECT_EQ(stringByAppendingPathComponent("/", "b"), "/b");
    EXPECT_EQ(stringByAppendingPathComponent("", "b"), "b");
    EXPECT_EQ(stringByAppendingPathComponent("/a/", ""), "/a");
    EXPECT_EQ(stringByAppendingPathComponent("/", ""), "/");
}

}  // namespace
