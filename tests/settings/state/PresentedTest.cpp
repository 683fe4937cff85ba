// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "platform/messageui/MFMailComposeViewController.h"
#include "platform/social/SLComposeViewController.h"
#include "platform/uikit/UIAlertView.h"
#include "settings/application/TopScreen.h"
#include "settings/state/PresentedWriter.h"
#include "tests/doubles/Required.h"
#include "tests/settings/TestList.h"

namespace {

using doubles::required;
using fixtures::Desk;
using platform::Data;
using platform::Dictionary;
using platform::MFMailComposeViewController;
using platform::Value;

Data bytes(const std::string& text) {
    return {text.begin(), text.end()};
}

/// The application with a mail composer on top that has one attachment.
class MailDesk {
  public:
    explicit MailDesk(std::optional<Data> attached = bytes("a line\n")) {
        desk.phone.mail->account = "me@example.net";
        composer->setSubject("Subject");
        composer->setToRecipients({"a@example.com"});
        composer->setMessageBody_isHTML("<b>Body</b>", true);
        composer->addAttachmentData_mimeType_fileName(std::move(attached), "mime", "velmora.log");
        desk.list->presentViewController_animated_completion(composer, true, {});
    }
    Value presented() { return desk.answer(R"({"do":"state"})")["state"]["presented"]; }
    Value preview() { return required(presented()["attachments"].array())->at(0)["preview"]; }
    Value compose(const std::string& result) {
        return desk.answer(R"({"do":"compose","result":")" + result + "\"}");
    }

    Desk desk;
    std::shared_ptr<MFMailComposeViewController> composer = std::make_shared<MFMailComposeViewController>();
};

TEST(Presented, mail_holdsEveryField) {
    MailDesk desk;
    const Value attachments = platform::Array{Dictionary{
        {"name", "velmora.log"}, {"type", "mime"}, {"bytes", 7}, {"preview", "a line\n"}, {"previewed", 7}}};
    EXPECT_EQ(desk.presented(), Value(Dictionary{{"id", desk.composer->number()},
                                                 {"kind", "mail"},
                                                 {"from", "me@example.net"},
                                                 {"to", platform::Array{"a@example.com"}},
                                                 {"subject", "Subject"},
                                                 {"body", "<b>Body</b>"},
                                                 {"html", true},
                                                 {"attachments", attachments}}));
}

TEST(Presented, attachment_canBeReadWhateverIsInIt) {
    EXPECT_EQ(MailDesk(Data{'a', 0, 'b'}).preview(), Value("a\u2400b"));
    EXPECT_EQ(MailDesk(std::nullopt).preview(), Value(""));
}

TEST(Compose, mailSentAndSaved_reachTheService) {
    MailDesk sent;
    EXPECT_EQ(sent.compose("sent")["ok"], Value(true));
    EXPECT_EQ(sent.desk.phone.mail->sent.size(), 1U);
    EXPECT_TRUE(sent.presented().isNil());
    MailDesk saved;
    EXPECT_EQ(saved.compose("saved")["ok"], Value(true));
    EXPECT_EQ(saved.desk.phone.mail->saved.size(), 1U);
}

TEST(Compose, mailCancelledOrFailed_isNotSent) {
    for (const char* result : {"cancelled", "failed"}) {
        MailDesk desk;
        EXPECT_EQ(desk.compose(result)["ok"], Value(true));
        EXPECT_TRUE(desk.desk.phone.mail->sent.empty());
        EXPECT_TRUE(desk.desk.phone.mail->saved.empty());
        EXPECT_TRUE(desk.presented().isNil());
    }
}

TEST(Compose, unknownResultOrNoComposer_isRefusedAndChangesNothing) {
    MailDesk desk;
    EXPECT_EQ(desk.compose("posted")["ok"], Value(false));
    EXPECT_EQ(desk.presented()["kind"], Value("mail"));
    desk.compose("cancelled");
    EXPECT_EQ(desk.compose("cancelled")["ok"], Value(false));
}

TEST(Compose, post_opensTheServicesPageOnlyWhenItIsSent) {
    Desk desk;
    for (const auto& [result, opened] :
         {std::pair{"saved", 0U}, {"failed", 0U}, {"cancelled", 0U}, {"sent", 1U}}) {
        desk.list->presentViewController_animated_completion(
            platform::SLComposeViewController::composeViewControllerForServiceType(
                platform::SLServiceTypeTwitter),
            true, {});
        EXPECT_EQ(desk.answer(R"({"do":"compose","result":"posted"})")["ok"], Value(false));
        EXPECT_EQ(desk.answer(R"({"do":"compose","result":")" + std::string(result) + "\"}")["ok"],
                  Value(true));
        EXPECT_EQ(desk.phone.urls->opened.size(), opened) << result;
    }
}

TEST(Presented, alertWithoutButtons_isAnActivityThatOnlyTheProgramCloses) {
    Desk desk;
    desk.list->setRows({fixtures::plainRow("A", platform::PSCellType::StaticText)});
    platform::UIAlertView activity("Resetting", "Wait.", nullptr, std::nullopt, {});
    activity.show();
    EXPECT_EQ(desk.answer(R"({"do":"state"})")["state"]["presented"],
              Value(Dictionary{{"id", settings::TopScreen::now().presented->number()},
                               {"kind", "activity"},
                               {"title", "Resetting"},
                               {"message", "Wait."},
                               {"actions", platform::Array()}}));
    for (const char* line : {R"({"do":"choose","action":"Close"})", R"({"do":"tap","row":0})",
                             R"({"do":"back"})", R"({"do":"compose","result":"sent"})"}) {
        EXPECT_EQ(desk.answer(line)["ok"], Value(false)) << line;
    }
    activity.dismiss();
    EXPECT_TRUE(desk.answer(R"({"do":"state"})")["state"]["presented"].isNil());
}

}  // namespace
