// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "platform/foundation/Bundle.h"
#include "platform/uikit/UIAlertController.h"
#include "platform/uikit/UIApplication.h"
#include "tests/doubles/Phone.h"
#include "velmora/VMActivityAlertView.h"
#include "velmora/VMUtils.h"

namespace velmora {
namespace {

using Strings = std::vector<std::string>;

TEST(VMUtils, killedProcess_isEndedAndToldInTheJournal) {
    doubles::Phone phone;
    VMUtils::killProcessByName("SpringBoard");
    EXPECT_EQ(Strings{"SpringBoard"}, phone.processes->killed);
    EXPECT_EQ((std::vector<::platform::Dictionary>{{{"event", "kill"}, {"process", "SpringBoard"}}}),
              phone.takeEvents());
    EXPECT_TRUE(phone.log->lines().empty());
}

TEST(VMUtils, processThatIsNotThere_isLogged) {
    doubles::Phone phone;
    VMUtils::killProcessByName("Nobody");
    phone.processes = nullptr;
    phone.install();
    VMUtils::killProcessByName("SpringBoard");
    ASSERT_EQ(2U, phone.log->lines().size());
    EXPECT_NE(std::string::npos, phone.log->lines()[0].find("Nobody"));
    EXPECT_NE(std::string::npos, phone.log->lines()[1].find("SpringBoard"));
}

TEST(VMUtils, labels_comeFromTheToolkitsOwnTable) {
    doubles::Phone phone;
    phone.files->put("/App.app/de.lproj/UIKit.strings", "\"Close\" = \"Schließen\";");
    phone.files->put("/App.app/de.lproj/Localizable.strings", "\"Close\" = \"Zu\";");
    phone.facts->languages = {"de"};
    ::platform::Bundle::setMainBundlePath("/App.app");
    EXPECT_EQ("Schließen", VMUtils::localizedLabelFromUIKit("Close"));
    EXPECT_EQ("Unknown", VMUtils::localizedLabelFromUIKit("Unknown"));
    ::platform::Bundle::setMainBundlePath("");
}

TEST(VMUtils, platform_isTheDevicesModel) {
    doubles::Phone phone;
    EXPECT_EQ("Phone7,2", VMUtils::platform());
    phone.facts = nullptr;
    phone.install();
    EXPECT_EQ("", VMUtils::platform());
}

TEST(VMActivityAlertView, shown_isOnTopWithoutAButtonUntilItIsClosed) {
    doubles::Phone phone;
    const auto root = std::make_shared<::platform::UIViewController>();
    auto& application = ::platform::UIApplication::sharedApplication();
    application.setRootViewController(root);
    const auto activity =
        std::make_shared<VMActivityAlertView>("Resetting", "Wait.", nullptr, std::nullopt, Strings());
    activity->show();
    const auto alert =
        std::dynamic_pointer_cast<::platform::UIAlertController>(application.topmostPresented());
    ASSERT_TRUE(alert);
    EXPECT_EQ("Resetting", alert->title());
    EXPECT_EQ("Wait.", alert->message());
    EXPECT_TRUE(alert->actions().empty());
    activity->close();
    EXPECT_EQ(root, application.topmostPresented());
    activity->close();
    application.setRootViewController(nullptr);
}

}  // namespace
}  // namespace velmora
