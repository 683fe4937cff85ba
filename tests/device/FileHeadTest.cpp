// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>

#include "device/FileHead.h"
#include "tests/doubles/TemporaryDirectory.h"

namespace {

using device::host::readHead;

TEST(FileHead, bytesUpToTheLimit_areRead) {
    const testing_support::TemporaryDirectory directory;
    const std::string path = directory / "file";
    testing_support::writeText(path, "12345");
    EXPECT_EQ(readHead(path, 4)->bytes, "1234");
    EXPECT_FALSE(readHead(path, 4)->whole);
    EXPECT_EQ(readHead(path, 5)->bytes, "12345");
    EXPECT_TRUE(readHead(path, 5)->whole);
    EXPECT_EQ(readHead(path, 100'000)->bytes, "12345");
}

TEST(FileHead, fileWithoutASize_isReadToItsEnd) {
    // The system makes such files up while they are read.
    const auto head = readHead("/proc/self/status", 1 << 20);
    ASSERT_TRUE(head);
    EXPECT_TRUE(head->whole);
    EXPECT_TRUE(head->bytes.starts_with("Name:"));
}

TEST(FileHead, state_tellsAChangedFile) {
    const testing_support::TemporaryDirectory directory;
    const std::string path = directory / "file";
    testing_support::writeText(path, "1");
    const std::string before = readHead(path, 9)->state;
    EXPECT_EQ(readHead(path, 9)->state, before);
    testing_support::writeText(path, "12");
    EXPECT_NE(readHead(path, 9)->state, before);
}

TEST(FileHead, whatIsNoFile_isAnError) {
    const testing_support::TemporaryDirectory directory;
    EXPECT_EQ(readHead(directory / "none", 9).error(), ENOENT);
    EXPECT_EQ(readHead(directory.path().string(), 9).error(), EISDIR);
    EXPECT_EQ(readHead("/dev/zero", 9).error(), EOPNOTSUPP);
}

}  // namespace
