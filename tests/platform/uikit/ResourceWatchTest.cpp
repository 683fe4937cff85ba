// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/foundation/Bundle.h"
#include "platform/foundation/ResourceWatch.h"
#include "platform/uikit/UIImage.h"
#include "tests/doubles/Phone.h"

namespace {

using platform::Bundle;
using platform::ResourceWatch;
using testing::ElementsAre;
using testing::IsEmpty;

/// Watches as long as it lives.
class Noting : public ResourceWatch {
  public:
    Noting() { set(this); }
    ~Noting() override { set(nullptr); }

    void textAsked(const std::string& bundlePath, std::string_view key, std::string_view table) override {
        asked.push_back(bundlePath + " " + std::string(key) + " " + std::string(table));
    }
    void imageAsked(const std::string& bundlePath, std::string_view name) override {
        asked.push_back(bundlePath + " " + std::string(name));
    }

    std::vector<std::string> asked;
};

}  // namespace

TEST(ResourceWatch, Asked_isToldWhetherItIsThereOrNot) {
    const doubles::Phone phone;
    phone.files->put("/B.bundle/en.lproj/Localizable.strings", "\"there\" = \"There\";");
    const auto bundle = std::make_shared<Bundle>("/B.bundle");
    const Noting noting;
    EXPECT_EQ(bundle->localizedStringForKey_value_table("there", {}, {}), "There");
    bundle->localizedStringForKey_value_table("absent", "default", "Other");
    platform::UIImage::imageNamed_inBundle("image", bundle);
    EXPECT_THAT(noting.asked,
                ElementsAre("/B.bundle there Localizable", "/B.bundle absent Other", "/B.bundle image"));
}

TEST(ResourceWatch, Asked_whenNobodyWatches_isAnsweredAllTheSame) {
    const doubles::Phone phone;
    {
        const Noting taken;
    }
    EXPECT_EQ(ResourceWatch::current(), nullptr);
    EXPECT_EQ(Bundle("/B.bundle").localizedStringForKey_value_table("absent", {}, {}), "absent");
}

TEST(ResourceWatch, Asked_ofBundleWithoutADirectory_isNotTold) {
    const doubles::Phone phone;
    const Noting noting;
    Bundle("").localizedStringForKey_value_table("key", {}, {});
    EXPECT_THAT(noting.asked, IsEmpty());
}
