// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>

#include "device/BrowserURLOpener.h"
#include "platform/foundation/RunLoop.h"
#include "tests/doubles/Desktop.h"
#include "tests/doubles/Phone.h"
#include "tests/doubles/TemporaryDirectory.h"

namespace {

using device::BrowserURLOpener;
using device::TwitterApplication;
using testing_support::Desktop;
using testing_support::TemporaryDirectory;
using testing_support::Variable;

class BrowserURLOpenerTest : public testing::Test {
  protected:
    doubles::Phone phone;
    BrowserURLOpener opener{TwitterApplication::Absent};
    Variable display{"DISPLAY", nullptr};
    Variable wayland{"WAYLAND_DISPLAY", nullptr};
};

TEST_F(BrowserURLOpenerTest, canOpen_webAddresses_andTwitterWhenInstalled) {
    EXPECT_TRUE(opener.canOpenURL("http://a.example/"));
    EXPECT_TRUE(opener.canOpenURL("HTTPS://a.example/"));
    EXPECT_FALSE(opener.canOpenURL("twitter://user"));
    EXPECT_TRUE(BrowserURLOpener(TwitterApplication::Installed).canOpenURL("twitter://user"));
    for (const char* url :
         {"", "http", "file:///etc/passwd", "javascript:alert(1)", "--help", "https://a b", "https://a\n"}) {
        EXPECT_FALSE(opener.canOpenURL(url)) << url;
    }
}

TEST_F(BrowserURLOpenerTest, open_withoutADisplay_printsTheAddressAndJournalsIt) {
    testing::internal::CaptureStderr();
    EXPECT_TRUE(opener.openURL("https://a.example/x"));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Please open https://a.example/x\n");
    EXPECT_EQ(phone.takeEvents(),
              (std::vector<platform::Dictionary>{{{"event", "open"}, {"url", "https://a.example/x"}}}));
}

TEST_F(BrowserURLOpenerTest, open_whatNothingTakes_isFalseAndLeavesNoTrace) {
    EXPECT_FALSE(opener.openURL("twitter://user"));
    EXPECT_TRUE(phone.takeEvents().empty());
}

TEST_F(BrowserURLOpenerTest, open_withADisplay_handsTheAddressOverAsOneArgument) {
    const Desktop desktop(Desktop::opensEverything);
    const std::string url = "https://a.example/?q=$(id)&r='x';`y`";
    EXPECT_TRUE(opener.openURL(url));
    EXPECT_EQ(desktop.said(), "1:" + url);
}

TEST_F(BrowserURLOpenerTest, open_whereTheHelperFindsNoBrowser_printsTheAddressOnce) {
    const Desktop desktop(Desktop::findsNoProgram);
    std::string printed;
    testing::internal::CaptureStderr();
    EXPECT_TRUE(opener.openURL("https://a.example/"));
    EXPECT_TRUE(platform::RunLoop::main().runUntil(
        [&] {
            printed += testing::internal::GetCapturedStderr();
            testing::internal::CaptureStderr();
            return !printed.empty();
        },
        std::chrono::minutes(1)));
    phone.drain();
    printed += testing::internal::GetCapturedStderr();
    EXPECT_EQ(printed, "Please open https://a.example/\n");
}

TEST_F(BrowserURLOpenerTest, open_withADisplayButNoHelper_printsTheAddress) {
    const TemporaryDirectory empty;
    const Variable here("DISPLAY", ":77");
    const Variable path("PATH", empty.path().c_str());
    testing::internal::CaptureStderr();
    EXPECT_TRUE(opener.openURL("https://a.example/"));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Please open https://a.example/\n");
}

}  // namespace
