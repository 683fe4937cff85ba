// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "shell/base/Localization.h"
#include "shell/base/NavBarColor.h"
#include "shell/base/ProductInfo.h"
#include "tests/doubles/PluginPhone.h"

namespace quietrix {
namespace {

const std::string productFile = std::string(bundlePath) + "/Quietrix.plist";

class ProductInfo : public testing::Test {
  protected:
    doubles::PluginPhone phone_;
};

TEST_F(ProductInfo, askedTwice_readsTheFileOnce) {
    EXPECT_EQ(doubles::productVersion(), getProductInfoDict()["Version"].stringOr());
    EXPECT_EQ(doubles::productVersion(), getProductInfoDict()["Version"].stringOr());
    EXPECT_EQ(1, phone_.files->reads(productFile));
}

TEST_F(ProductInfo, fileMissing_isTriedAtEachCall) {
    ASSERT_TRUE(phone_.files->remove(productFile));
    EXPECT_TRUE(getProductInfoDict().isNil());
    EXPECT_TRUE(getProductInfoDict().isNil());
    EXPECT_EQ(2, phone_.files->reads(productFile));
}

TEST_F(ProductInfo, fileThatIsNoDictionary_givesNil) {
    phone_.files->put(productFile, "<plist version=\"1.0\"><array/></plist>");
    EXPECT_TRUE(getProductInfoDict().isNil());
}

TEST_F(ProductInfo, idiom_isTheDevices) {
    phone_.facts->idiom = 1;
    EXPECT_EQ(1, UI_USER_INTERFACE_IDIOM());
    phone_.facts->idiom = 0;
    EXPECT_EQ(0, UI_USER_INTERFACE_IDIOM());
}

TEST_F(ProductInfo, deviceThatDoesNotKnowItsIdiom_isAPhone) {
    phone_.facts->idiom = std::nullopt;
    EXPECT_EQ(0, UI_USER_INTERFACE_IDIOM());
}

TEST_F(ProductInfo, colourImage_isTheFileNav) {
    const auto image = getNavBarColorImage(platform::Object::staticClass());
    ASSERT_NE(nullptr, image);
    EXPECT_EQ(std::string(bundlePath) + "/nav.png", image->path());
}

TEST_F(ProductInfo, colourImageWithoutThePlainFile_isTheNamedOne) {
    ASSERT_TRUE(phone_.files->remove(std::string(bundlePath) + "/nav.png"));
    const auto image = getNavBarColorImage(platform::Object::staticClass());
    ASSERT_NE(nullptr, image);
    EXPECT_EQ("nav", image->name());
    EXPECT_EQ(std::string(bundlePath) + "/nav@2x.png", image->path());
}

TEST_F(ProductInfo, noColourImage_givesNoColour) {
    phone_.removePluginBundle();
    EXPECT_EQ(nullptr, getNavBarColorImage(platform::Object::staticClass()));
    EXPECT_EQ(nullptr, navBarPatternColor(platform::Object::staticClass()));
}

}  // namespace
}  // namespace quietrix
