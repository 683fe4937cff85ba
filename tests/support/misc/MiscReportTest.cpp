// SPDX-License-Identifier: MIT
#include "tests/support/misc/MiscFixture.h"

namespace quietrix {
namespace {

using doubles::required;

constexpr const char* deviceLines =
    "Please donot remove the below information.\nSerial number: F4KESERIAL01\nPhone7,2 with iOS:11.4, "
    "UDID:0123456789abcdef0123456789abcdef01234567.";

class MiscReport : public MiscFixture {
  protected:
    MiscReport() { phone_.mail->account = "user@example.org"; }
};

TEST_F(MiscReport, confirmed_composesTheMailWithTheLog) {
    phone_.files->put("/tmp/velmora.log", "line one\n");
    open();
    confirmReport();
    ASSERT_NE(nullptr, composer());
    const auto& draft = composer()->draft();
    EXPECT_EQ("Quietrix Go - velmora.log", draft.subject);
    EXPECT_EQ(std::vector<std::string>{"support@velmora.com"}, draft.to);
    EXPECT_EQ(std::string(deviceLines) + "\n" + footerAt(2), draft.body);
    EXPECT_TRUE(footerAt(2).starts_with("Version " + doubles::productVersion() + ". Quietrix Go "));
    EXPECT_TRUE(draft.isHTML);
    ASSERT_EQ(1U, draft.attachments.size());
    EXPECT_EQ("velmora.log", draft.attachments[0].name);
    EXPECT_EQ("mime", draft.attachments[0].type);
    EXPECT_EQ("line one\n", std::string(draft.attachments[0].data.begin(), draft.attachments[0].data.end()));
}

TEST_F(MiscReport, cancelledQuestion_composesNothing) {
    open();
    tapAndChoose("report", 1);
    EXPECT_EQ(nullptr, composer());
}

TEST_F(MiscReport, everyEndOfTheComposer_returnsToTheScreenSilently) {
    using platform::MFMailComposeResult;
    for (const auto result : {MFMailComposeResult::Sent, MFMailComposeResult::Saved,
                              MFMailComposeResult::Cancelled, MFMailComposeResult::Failed}) {
        open();
        confirmReport();
        ASSERT_NE(nullptr, composer());
        ASSERT_TRUE(composer()->finish(result));
        phone_.drain();
        EXPECT_EQ(navigation_, doubles::Phone::top());
        EXPECT_TRUE(screen_->isVisible());
    }
    EXPECT_EQ(1U, phone_.mail->sent.size());
    EXPECT_EQ(1U, phone_.mail->saved.size());
}

/// Counts the composer's reports, and goes on as the screen does.
class ReportedScreen : public QuietrixMiscController {
  public:
    void mailComposeController_didFinishWithResult_error(
        const std::shared_ptr<platform::MFMailComposeViewController>& composer,
        platform::MFMailComposeResult result, const std::optional<platform::Error>& error) override {
        ++reports;
        QuietrixMiscController::mailComposeController_didFinishWithResult_error(composer, result, error);
    }
    int reports = 0;
};

TEST_F(MiscReport, screen_isToldOfTheEndAndClosesTheComposer) {
    const auto told = std::make_shared<ReportedScreen>();
    openScreen(doubles::Place::First, told);
    confirmReport();
    ASSERT_NE(nullptr, composer());
    EXPECT_EQ(told, composer()->mailComposeDelegate());
    ASSERT_TRUE(composer()->finish(platform::MFMailComposeResult::Cancelled));
    EXPECT_EQ(1, told->reports);
    EXPECT_EQ(nullptr, composer());
}

TEST_F(MiscReport, missingLog_isAttachedEmptyAndLogged) {
    open();
    confirmReport();
    ASSERT_NE(nullptr, composer());
    ASSERT_EQ(1U, composer()->draft().attachments.size());
    EXPECT_TRUE(composer()->draft().attachments[0].data.empty());
    ASSERT_EQ(1U, phone_.log->lines().size());
    EXPECT_NE(std::string::npos, phone_.log->lines()[0].find("velmora.log"));
}

TEST_F(MiscReport, logThatCannotBeRead_isAttachedEmptyAndItsReasonLogged) {
    phone_.files->put("/tmp/velmora.log", "all that happened");
    phone_.files->failReads("Input/output error", "/tmp/velmora.log");
    open();
    confirmReport();
    ASSERT_NE(nullptr, composer());
    EXPECT_TRUE(composer()->draft().attachments.at(0).data.empty());
    EXPECT_TRUE(std::ranges::any_of(phone_.log->lines(), [](const std::string& line) {
        return line.contains("/tmp/velmora.log") && line.contains("Input/output error");
    }));
}

TEST_F(MiscReport, withoutAnAccount_saysSoInTheHostsWords) {
    phone_.mail->account.clear();
    phone_.facts->languages = {"de"};
    open();
    confirmReport();
    EXPECT_EQ(nullptr, composer());
    ASSERT_NE(nullptr, alert());
    EXPECT_EQ("Information", alert()->title());
    EXPECT_EQ("Es sind keine E-Mail-Accounts konfiguriert.", alert()->message());
    ASSERT_EQ(1U, alert()->actions().size());
    EXPECT_EQ("Schließen", alert()->actions()[0].title);
    phone_.removePluginBundle();
    alert()->choose(0);
    confirmReport();
    EXPECT_EQ("Es sind keine E-Mail-Accounts konfiguriert.", required(alert())->message());
}

TEST_F(MiscReport, beforeTheViewHasLoaded_endsWithTheCopyrightAlone) {
    currentYear() = 2026;
    screen_ = std::make_shared<QuietrixMiscController>();
    const auto row = rowAt(3);
    const std::string copyright = footerAt(2);
    phone_.show(screen_);
    // Whatever loading the view has put there.
    rowAt(2)->setProperty_forKey(copyright, "footerText");
    screen_->emailLogFile(row);
    ASSERT_NE(nullptr, composer());
    EXPECT_EQ(std::string(deviceLines) + "\n" + copyright, composer()->draft().body);
}

TEST_F(MiscReport, footer_isCountedFromTheEndOfTheRows) {
    open();
    const auto extra = platform::PSSpecifier::groupSpecifierWithName("Extra");
    extra->setProperty_forKey("Extra footer", "footerText");
    screen_->insertSpecifier_atIndex_animated(extra, 0, false);
    screen_->emailLogFile(nullptr);
    ASSERT_NE(nullptr, composer());
    EXPECT_NE(std::string::npos, composer()->draft().body.find("Version " + doubles::productVersion()));
    composer()->finish(platform::MFMailComposeResult::Cancelled);
    screen_->insertSpecifier_atIndex_animated(platform::PSSpecifier::groupSpecifierWithName("Last"), 5,
                                              false);
    screen_->emailLogFile(nullptr);
    ASSERT_NE(nullptr, composer());
    EXPECT_EQ(deviceLines, composer()->draft().body) << "the row before the last has no footer now";
}

}  // namespace
}  // namespace quietrix
