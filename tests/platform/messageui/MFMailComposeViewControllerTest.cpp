// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "platform/messageui/MFMailComposeViewController.h"
#include "tests/doubles/ShownScreens.h"

namespace platform {
namespace {

/// Notes how the composer ended, and dismisses it as a delegate should.
class Delegate : public MFMailComposeViewControllerDelegate {
  public:
    struct End {
        MFMailComposeResult result;
        std::optional<Error> error;
        bool operator==(const End&) const = default;
    };
    std::vector<End> ends;
    bool dismisses = true;

    void mailComposeController_didFinishWithResult_error(
        const std::shared_ptr<MFMailComposeViewController>& composer, MFMailComposeResult result,
        const std::optional<Error>& error) override {
        ends.push_back({result, error});
        if (dismisses) composer->dismissViewControllerAnimated_completion(true, {});
    }
};

class MailComposer : public testing::Test, public doubles::ShownScreens {
  protected:
    std::shared_ptr<MFMailComposeViewController> present() {
        auto composer = std::make_shared<MFMailComposeViewController>();
        composer->setMailComposeDelegate(delegate);
        composer->setSubject("Subject");
        composer->setToRecipients({"a@example.com"});
        composer->setMessageBody_isHTML("Body", true);
        composer->addAttachmentData_mimeType_fileName(Data{1, 2}, "mime", "a.log");
        root->presentViewController_animated_completion(composer, true, {});
        return composer;
    }

    std::shared_ptr<Delegate> delegate = std::make_shared<Delegate>();
};

TEST_F(MailComposer, canSendMail_needsAServiceWithAnAccount) {
    EXPECT_FALSE(MFMailComposeViewController::canSendMail());
    phone.mail->account = "me@example.net";
    EXPECT_TRUE(MFMailComposeViewController::canSendMail());
    phone.mail = nullptr;
    phone.install();
    EXPECT_FALSE(MFMailComposeViewController::canSendMail());
}

TEST_F(MailComposer, sentMail_reachesTheServiceWholeAndTheDelegateOnce) {
    const auto composer = present();
    EXPECT_TRUE(composer->finish(MFMailComposeResult::Sent));
    ASSERT_EQ(1U, phone.mail->sent.size());
    const MailDraft& mail = phone.mail->sent[0];
    EXPECT_EQ("Subject", mail.subject);
    EXPECT_EQ(std::vector<std::string>{"a@example.com"}, mail.to);
    EXPECT_EQ("Body", mail.body);
    EXPECT_TRUE(mail.isHTML);
    ASSERT_EQ(1U, mail.attachments.size());
    EXPECT_EQ("a.log", mail.attachments[0].name);
    EXPECT_EQ("mime", mail.attachments[0].type);
    EXPECT_EQ((Data{1, 2}), mail.attachments[0].data);
    EXPECT_EQ((std::vector<Delegate::End>{{MFMailComposeResult::Sent, std::nullopt}}), delegate->ends);
    EXPECT_EQ(navigation, top());
    EXPECT_TRUE(phone.mail->saved.empty());
}

TEST_F(MailComposer, savedAndCancelledMails_areNotSent) {
    EXPECT_TRUE(present()->finish(MFMailComposeResult::Saved));
    EXPECT_EQ(1U, phone.mail->saved.size());
    EXPECT_TRUE(present()->finish(MFMailComposeResult::Cancelled));
    EXPECT_EQ(1U, phone.mail->saved.size());
    EXPECT_TRUE(phone.mail->sent.empty());
    EXPECT_EQ((std::vector<Delegate::End>{{MFMailComposeResult::Saved, std::nullopt},
                                          {MFMailComposeResult::Cancelled, std::nullopt}}),
              delegate->ends);
}

TEST_F(MailComposer, failedMail_isNotSentAndHasAnError) {
    EXPECT_TRUE(present()->finish(MFMailComposeResult::Failed));
    EXPECT_TRUE(phone.mail->sent.empty());
    ASSERT_EQ(1U, delegate->ends.size());
    EXPECT_EQ(MFMailComposeResult::Failed, delegate->ends[0].result);
    EXPECT_TRUE(delegate->ends[0].error);
}

TEST_F(MailComposer, mailThatTheServiceRefuses_failsWithItsReason) {
    phone.mail->refusal = Error{"The disk is full."};
    EXPECT_TRUE(present()->finish(MFMailComposeResult::Sent));
    EXPECT_EQ((std::vector<Delegate::End>{{MFMailComposeResult::Failed, Error{"The disk is full."}}}),
              delegate->ends);
    ASSERT_EQ(1U, phone.log->lines().size());
    EXPECT_NE(std::string::npos, phone.log->lines()[0].find("The disk is full."));
}

TEST_F(MailComposer, endedOrHiddenComposer_cannotBeEndedAgain) {
    delegate->dismisses = false;
    const auto composer = present();
    EXPECT_TRUE(composer->finish(MFMailComposeResult::Cancelled));
    EXPECT_FALSE(composer->finish(MFMailComposeResult::Sent));
    EXPECT_FALSE(std::make_shared<MFMailComposeViewController>()->finish(MFMailComposeResult::Sent));
    EXPECT_EQ(1U, delegate->ends.size());
    EXPECT_TRUE(phone.mail->sent.empty());
}

TEST_F(MailComposer, withoutADelegate_dismissesItself) {
    const auto composer = present();
    delegate.reset();
    EXPECT_TRUE(composer->finish(MFMailComposeResult::Cancelled));
    EXPECT_EQ(navigation, top());
}

TEST_F(MailComposer, missingAttachment_isAnEmptyOneAndLogged) {
    const auto composer = std::make_shared<MFMailComposeViewController>();
    composer->addAttachmentData_mimeType_fileName(std::nullopt, "mime", "velmora.log");
    ASSERT_EQ(1U, composer->draft().attachments.size());
    EXPECT_TRUE(composer->draft().attachments[0].data.empty());
    ASSERT_EQ(1U, phone.log->lines().size());
    EXPECT_NE(std::string::npos, phone.log->lines()[0].find("velmora.log"));
}

}  // namespace
}  // namespace platform
