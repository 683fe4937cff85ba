// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "settings/channels/server/PageFiles.h"
#include "tests/doubles/TemporaryDirectory.h"

namespace settings::server {

namespace fs = std::filesystem;
using namespace std::string_literals;

TEST(ReadRegularFile, anyBytes_comeBackWhole) {
    const testing_support::TemporaryDirectory directory;
    const std::string content = "a\0b\xff\n"s;
    EXPECT_EQ(readRegularFile(directory.write("file", content), 5), content);
    EXPECT_EQ(readRegularFile(directory.write("empty", ""), 5), "");
}

TEST(ReadRegularFile, longerThanAllowed_isRefused) {
    const testing_support::TemporaryDirectory directory;
    EXPECT_FALSE(readRegularFile(directory.write("file", "123456"), 5));
}

TEST(ReadRegularFile, noRegularFile_isRefusedAtOnce) {
    const testing_support::TemporaryDirectory directory;
    const std::string pipe = (directory.path() / "pipe").string();
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_FALSE(readRegularFile(pipe, 100));
    EXPECT_FALSE(readRegularFile(directory.path().string(), 100000));
    EXPECT_FALSE(readRegularFile("/dev/zero", 100));
    EXPECT_FALSE(readRegularFile((directory.path() / "missing").string(), 100));
    EXPECT_FALSE(readRegularFile(directory.write("file", "1") + "\0x"s, 100));
}

TEST(PathBeneath, fileInAFolder_isFound) {
    const testing_support::TemporaryDirectory directory;
    const std::string file = directory.write("fonts/a.woff2", "x");
    EXPECT_EQ(pathBeneath(directory.path().string(), "fonts/a.woff2"), fs::canonical(file).string());
    EXPECT_FALSE(pathBeneath(directory.path().string(), "fonts/b.woff2"));
}

TEST(PathBeneath, linksWithinTheDirectory_areFollowed) {
    const testing_support::TemporaryDirectory directory;
    const std::string file = directory.write("real.js", "x");
    fs::create_symlink("real.js", directory.path() / "linked.js");
    EXPECT_EQ(pathBeneath(directory.path().string(), "linked.js"), fs::canonical(file).string());
}

TEST(PathBeneath, linksOutOfTheDirectory_areRefused) {
    const testing_support::TemporaryDirectory directory;
    directory.write("page-other/secret.txt", "x");
    directory.write("page/index.html", "x");
    const fs::path page = directory.path() / "page";
    fs::create_symlink("../page-other/secret.txt", page / "file.txt");
    fs::create_symlink("../page-other", page / "folder");
    fs::create_symlink("/etc", page / "etc");
    fs::create_symlink("loop", page / "loop");
    for (const char* name : {"file.txt", "folder/secret.txt", "etc/passwd", "loop", ""})
        EXPECT_FALSE(pathBeneath(page.string(), name)) << name;
}

TEST(PathBeneath, directoryThatIsItselfALink_serves) {
    const testing_support::TemporaryDirectory directory;
    const std::string file = directory.write("real/index.html", "x");
    fs::create_symlink("real", directory.path() / "page");
    EXPECT_EQ(pathBeneath((directory.path() / "page").string(), "index.html"), fs::canonical(file).string());
}

TEST(PathBeneath, missingDirectory_hasNoFiles) {
    EXPECT_FALSE(pathBeneath("/nowhere/at/all", "index.html"));
}

TEST(EntityTag, otherContent_hasAnotherQuotedTag) {
    EXPECT_EQ(entityTagOf("abc"), entityTagOf("abc"));
    EXPECT_NE(entityTagOf("abc"), entityTagOf("abd"));
    EXPECT_NE(entityTagOf(""), entityTagOf("\0"s));
    EXPECT_TRUE(entityTagOf("").starts_with('"'));
    EXPECT_TRUE(entityTagOf("").ends_with('"'));
}

TEST(IsPNG, onlyTheWholeSignature_counts) {
    EXPECT_TRUE(isPNG("\x89PNG\r\n\x1a\n"));
    EXPECT_TRUE(isPNG("\x89PNG\r\n\x1a\nrest"));
    for (const char* content : {"", "\x89PNG", "\x89PNG\n\x1a\n", "<svg/>", "GIF89a--"})
        EXPECT_FALSE(isPNG(content));
}

}  // namespace settings::server
