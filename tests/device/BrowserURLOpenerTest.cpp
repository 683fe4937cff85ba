// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <optional>

#include "device/BrowserURLOpener.h"
#include "device/Descriptor.h"
#include "platform/foundation/RunLoop.h"
#include "tests/doubles/Phone.h"
#include "tests/doubles/TemporaryDirectory.h"

namespace {

using device::BrowserURLOpener;
using device::TwitterApplication;
using testing_support::TemporaryDirectory;

/// An environment variable for one test.
class Variable {
  public:
    Variable(const char* name, const char* value) : name_(name) {
        if (const char* old = std::getenv(name)) old_ = old;
        set(value);
    }
    ~Variable() { set(old_ ? old_->c_str() : nullptr); }
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;

  private:
    void set(const char* value) {
        if (value) {
            setenv(name_, value, 1);
        } else {
            unsetenv(name_);
        }
    }
    const char* name_;
    std::optional<std::string> old_;
};

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
    const TemporaryDirectory directory;
    testing_support::writeText(directory / "xdg-open", "#!/bin/sh\necho \"$#:$1\" > \"$0.said\"\n");
    std::filesystem::permissions(directory / "xdg-open", std::filesystem::perms::owner_all);
    ASSERT_EQ(mkfifo((directory / "xdg-open.said").c_str(), 0600), 0);
    const device::Descriptor said(
        open((directory / "xdg-open.said").c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC));
    const Variable here("DISPLAY", ":77");
    const Variable path("PATH", directory.path().c_str());
    const std::string url = "https://a.example/?q=$(id)&r='x';`y`";
    EXPECT_TRUE(opener.openURL(url));

    pollfd readable{said.get(), POLLIN, 0};
    ASSERT_EQ(poll(&readable, 1, 60'000), 1);
    std::array<char, 200> bytes{};
    const ssize_t got = read(said.get(), bytes.data(), bytes.size());
    ASSERT_GT(got, 0);
    EXPECT_EQ(std::string(bytes.data(), static_cast<std::size_t>(got)), "1:" + url + "\n");
}

TEST_F(BrowserURLOpenerTest, open_whereTheHelperFindsNoBrowser_printsTheAddressOnce) {
    const TemporaryDirectory directory;
    testing_support::writeText(directory / "xdg-open", "#!/bin/sh\nexit 3\n");
    std::filesystem::permissions(directory / "xdg-open", std::filesystem::perms::owner_all);
    const Variable here("DISPLAY", ":77");
    const Variable path("PATH", directory.path().c_str());
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
