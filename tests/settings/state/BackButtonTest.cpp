// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "platform/uikit/UIBarButtonItem.h"
#include "platform/uikit/UIImage.h"
#include "tests/doubles/Required.h"
#include "tests/settings/TestList.h"

namespace settings {
namespace {

using fixtures::Desk;
using platform::Dictionary;
using platform::Value;

/// A screen above the list, whose title is "Beneath".
class BackButton : public testing::Test {
  protected:
    BackButton() {
        desk_.list->setTitle("Beneath");
        doubles::required(desk_.list->navigationController())
            ->pushViewController_animated(std::make_shared<platform::PSViewController>(), false);
    }
    /// The back button after the list has got an item with that face.
    Value with(const auto& face) {
        desk_.list->navigationItem()->setBackBarButtonItem(std::make_shared<platform::UIBarButtonItem>(
            face, platform::UIBarButtonItemStylePlain, desk_.list, platform::UIBarButtonItem::Action()));
        return back();
    }
    Value back() { return desk_.answer(R"({"do":"state"})")["state"]["screen"]["bar"]["back"]; }

    Desk desk_;
};

TEST_F(BackButton, withoutAnItem_isTheTitleBeneath) {
    EXPECT_EQ(Value(Dictionary{{"title", "Beneath"}, {"image", nullptr}}), back());
}

TEST_F(BackButton, itemWithATitle_isThatTitle) {
    EXPECT_EQ(Value(Dictionary{{"title", "Go back"}, {"image", nullptr}}), with(std::string("Go back")));
    EXPECT_EQ(Value(""), with(std::string())["title"]);
}

TEST_F(BackButton, itemWithAnImage_isTheImageWithoutAText) {
    const Value button =
        with(platform::UIImage::imageFilledWithColor(platform::UIColor::redColor(), {10, 10}));
    EXPECT_EQ(Value(""), button["title"]);
    EXPECT_FALSE(button["image"].isNil());
}

TEST_F(BackButton, screenBeneathWithoutATitle_hasAnEmptyOne) {
    desk_.list->setTitle(std::nullopt);
    EXPECT_EQ(Value(Dictionary{{"title", ""}, {"image", nullptr}}), back());
}

}  // namespace
}  // namespace settings
