// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "platform/foundation/Bundle.h"
#include "platform/foundation/Device.h"
#include "platform/uikit/UIDevice.h"
#include "tests/doubles/Phone.h"

namespace platform {
namespace {

TEST(UIDevice, facts_areTheInstalledDevices) {
    doubles::Phone phone;
    phone.facts->idiom = 1;
    phone.facts->scale = 3.0;
    phone.facts->languages = {"zh-Hans", "en"};
    const UIDevice device = UIDevice::currentDevice();
    EXPECT_TRUE(device.respondsToSelector("userInterfaceIdiom"));
    EXPECT_EQ(UIUserInterfaceIdiomPad, device.userInterfaceIdiom());
    EXPECT_EQ(phone.facts->version, device.systemVersion());
    EXPECT_EQ(phone.facts->serial, device.serialNumber());
    EXPECT_EQ(phone.facts->udid, device.UDID());
    EXPECT_EQ(3.0, UIScreen::mainScreen().scale());
    EXPECT_EQ((Rect{0, 0, 768, 1024}), UIScreen::mainScreen().bounds());
    EXPECT_EQ((std::vector<std::string>{"zh-Hans", "en"}), preferredLanguages());
}

TEST(UIDevice, idiomThatIsNotAnswered_isAPhone) {
    doubles::Phone phone;
    phone.facts->idiom.reset();
    const UIDevice device = UIDevice::currentDevice();
    EXPECT_FALSE(device.respondsToSelector("userInterfaceIdiom"));
    EXPECT_TRUE(device.respondsToSelector("systemVersion"));
    EXPECT_FALSE(device.respondsToSelector("fly"));
    EXPECT_EQ(UIUserInterfaceIdiomPhone, device.userInterfaceIdiom());
    EXPECT_EQ((Rect{0, 0, 390, 844}), UIScreen::mainScreen().bounds());
}

TEST(UIDevice, withoutADevice_everyQuestionHasAnAnswer) {
    Device::install({});
    const UIDevice device = UIDevice::currentDevice();
    EXPECT_FALSE(device.respondsToSelector("userInterfaceIdiom"));
    EXPECT_EQ("", device.systemVersion());
    EXPECT_EQ(2.0, UIScreen::mainScreen().scale());
    EXPECT_EQ(std::vector<std::string>{"en"}, preferredLanguages());
}

TEST(UIKitLabels, translation_comesFromTheMainBundlesOwnTable) {
    doubles::Phone phone;
    phone.facts->languages = {"de"};
    phone.files->put("/Main.app/de.lproj/UIKit.strings", R"("Error" = "Fehler";)");
    phone.files->put("/Main.app/de.lproj/Localizable.strings", R"("Close" = "falsch";)");
    Bundle::setMainBundlePath("/Main.app");
    EXPECT_EQ("Fehler", localizedLabelFromUIKit("Error"));
    EXPECT_EQ("Close", localizedLabelFromUIKit("Close"));
    Bundle::setMainBundlePath({});
}

}  // namespace
}  // namespace platform
