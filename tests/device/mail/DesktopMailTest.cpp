// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <set>

#include "device/PhonePaths.h"
#include "device/RootFileSystem.h"
#include "device/mail/DesktopMail.h"
#include "platform/foundation/Device.h"
#include "platform/foundation/RunLoop.h"
#include "tests/doubles/Desktop.h"
#include "tests/doubles/Phone.h"
#include "tests/doubles/Required.h"
#include "tests/doubles/TemporaryDirectory.h"

namespace {

using device::DesktopMail;
using doubles::errorOf;
using testing_support::Desktop;
using testing_support::TemporaryDirectory;

/// A phone in a directory, on a machine without a display unless a test gives it one.
class DesktopMailTest : public testing::Test {
  protected:
    DesktopMailTest() {
        unsetenv("DISPLAY");
        unsetenv("WAYLAND_DISPLAY");
        platform::Device machine;
        machine.files = std::make_shared<device::RootFileSystem>(directory.path().string());
        machine.clock = phone.clock;
        machine.log = phone.log;
        platform::Device::install(machine);
    }
    std::vector<std::string> mailsIn(std::string_view path) const {
        const auto names = platform::Device::current().files->list(path);
        return names.value_or(std::vector<std::string>());
    }
    std::string textOf(std::string_view path) const {
        return testing_support::readText(directory.path() / path.substr(1) / mailsIn(path).at(0));
    }

    TemporaryDirectory directory;
    doubles::Phone phone;
    DesktopMail mail{"me@example.net"};
    platform::MailDraft draft{"Report", {"support@example.com"}, "Text", true, {{"a.log", "mime", {1, 2}}}};
};

TEST_F(DesktopMailTest, sentMail_isKeptInTheOutboxAndItsPlaceIsTold) {
    ASSERT_TRUE(mail.send(draft));
    const auto mails = mailsIn(device::phonePaths::mailOutbox);
    ASSERT_EQ(1U, mails.size());
    EXPECT_TRUE(mails[0].ends_with(".eml"));
    const std::string text = textOf(device::phonePaths::mailOutbox);
    EXPECT_NE(std::string::npos, text.find("From: me@example.net\n"));
    EXPECT_NE(std::string::npos, text.find("Subject: Report\n"));
    EXPECT_NE(std::string::npos, text.find("X-Unsent: 1\n"));
    ASSERT_EQ(1U, phone.log->lines().size());
    EXPECT_NE(std::string::npos, phone.log->lines()[0].find("/var/mobile/Library/Mail/Outbox/" + mails[0]));
    EXPECT_NE(std::string::npos, phone.log->lines()[0].find(directory / "var/mobile/Library/Mail/Outbox"));
    const auto writes = phone.takeEvents("write");
    ASSERT_EQ(1U, writes.size());
    EXPECT_EQ(platform::Value(true), writes[0].at("ok"));
}

TEST_F(DesktopMailTest, savedMail_isKeptWithTheDrafts) {
    ASSERT_TRUE(mail.save(draft));
    EXPECT_EQ(1U, mailsIn(device::phonePaths::mailDrafts).size());
    EXPECT_TRUE(mailsIn(device::phonePaths::mailOutbox).empty());
}

TEST_F(DesktopMailTest, mailsOfOneInstant_haveFilesOfTheirOwn) {
    for (int i = 0; i < 50; ++i) ASSERT_TRUE(mail.send(draft));
    EXPECT_EQ(50U, mailsIn(device::phonePaths::mailOutbox).size());
}

TEST_F(DesktopMailTest, withoutAnAccount_nothingIsSentButADraftIsKept) {
    DesktopMail none("");
    EXPECT_FALSE(none.canSend());
    EXPECT_FALSE(none.send(draft));
    EXPECT_TRUE(mailsIn(device::phonePaths::mailOutbox).empty());
    EXPECT_TRUE(none.save(draft));
}

TEST_F(DesktopMailTest, mailThatIsNone_leavesNoFile) {
    draft.to = {"nobody"};
    const auto refused = mail.send(draft);
    ASSERT_FALSE(refused);
    EXPECT_NE(std::string::npos, errorOf(refused).find("nobody"));
    EXPECT_TRUE(mailsIn(device::phonePaths::mailOutbox).empty());
}

TEST_F(DesktopMailTest, outboxThatCannotBeMade_isAnErrorThatNamesIt) {
    testing_support::writeText(directory.path() / "var/mobile/Library/Mail", "in the way");
    const auto refused = mail.send(draft);
    ASSERT_FALSE(refused);
    EXPECT_NE(std::string::npos, errorOf(refused).find("/var/mobile/Library/Mail"));
}

TEST_F(DesktopMailTest, onADesktop_theFileIsOfferedToItsMailProgram) {
    const Desktop desktop(Desktop::opensEverything);
    ASSERT_TRUE(mail.send(draft));
    EXPECT_EQ("1:" + (directory / "var/mobile/Library/Mail/Outbox/") +
                  mailsIn(device::phonePaths::mailOutbox).at(0),
              desktop.said());
}

TEST_F(DesktopMailTest, desktopThatIsLeftAlone_hearsOfNoMailAndNoPathOfTheMachineIsTold) {
    const Desktop desktop(Desktop::opensEverything);
    DesktopMail quiet("me@example.net", device::Desktop::IsLeftAlone);
    ASSERT_TRUE(quiet.send(draft));
    ASSERT_TRUE(quiet.save(draft));
    ASSERT_EQ(2U, phone.log->lines().size());
    for (const std::string& line : phone.log->lines())
        EXPECT_EQ(std::string::npos, line.find(directory.path().string())) << line;
    const std::string kept = mailsIn(device::phonePaths::mailOutbox).at(0);
    EXPECT_EQ("Mail: The mail is in /var/mobile/Library/Mail/Outbox/" + kept + ".", phone.log->lines()[0]);
    // What the desktop hears of is the next one.
    ASSERT_TRUE(mail.send(draft));
    const std::string said = desktop.said();
    EXPECT_NE("", said);
    EXPECT_EQ(std::string::npos, said.find(kept)) << said;
}

TEST_F(DesktopMailTest, onADesktopWithoutAMailProgram_aLogLineSaysSo) {
    const Desktop desktop(Desktop::findsNoProgram);
    ASSERT_TRUE(mail.send(draft));
    EXPECT_TRUE(platform::RunLoop::main().runUntil([&] { return phone.log->lines().size() == 2; },
                                                   std::chrono::minutes(1)));
    ASSERT_FALSE(phone.log->lines().empty());
    EXPECT_NE(std::string::npos, phone.log->lines().back().find("no program for"));
    EXPECT_NE(std::string::npos,
              phone.log->lines().back().find(mailsIn(device::phonePaths::mailOutbox).at(0)));
}

}  // namespace
