// SPDX-License-Identifier: MIT
#pragma once

#include "tests/doubles/ProfileScreenFixture.h"

namespace quietrix {

/// A picker above another screen, opened by a row whose user info holds the profile.
template <class Screen>
class PickerFixture : public doubles::ProfileScreenFixture<Screen> {
  protected:
    /// `others` go into the user info beside the profile.
    void open(platform::Dictionary others = {}) {
        this->storeProfile();
        others["profile"] = this->profile_;
        this->makeOpeningRow("Condition", std::move(others));
        this->openScreen(doubles::Place::AboveAnother);
    }
    /// The profile that the opening row holds now.
    std::shared_ptr<QXProfile> shown() {
        return this->row_->userInfo()["profile"].template objectAs<QXProfile>();
    }
};

/// The same for a picker that is a list.
template <class Screen>
class ListPickerFixture : public PickerFixture<Screen> {
  protected:
    using Where = std::source_location;

    bool isChecked(std::string_view identifier, const Where& where = Where::current()) {
        return this->cellOf(identifier, where)->accessoryType() ==
               platform::UITableViewCellAccessoryCheckmark;
    }
    /// Every row but the copyright row, which must be the last.
    platform::SpecifierList ownRows(const Where& where = Where::current()) {
        platform::SpecifierList rows = *this->screen_->specifiers();
        if (rows.empty() || rows.back()->identifier() != "CopyRightHeader")
            doubles::endTest("The last row is not the copyright row.", where);
        rows.pop_back();
        return rows;
    }
    /// The hooks that every picker answers alike.
    void expectProductsChrome() {
        using doubles::nameOfPattern;
        EXPECT_TRUE(this->screen_->hasCustomNavigationBarColor());
        EXPECT_EQ("nav", nameOfPattern(this->screen_->customNavigationBarColor()));
        EXPECT_EQ("nav", nameOfPattern(this->navigation_->navigationBar()->barTintColor()));
        EXPECT_TRUE(this->screen_->twitterMessage().starts_with("I'm Loving #Quietrix"));
        EXPECT_EQ("twitter", doubles::nameOf(this->screen_->twitterImage()));
        ASSERT_NE(nullptr, this->screen_->copyRightSpecifier());
        EXPECT_TRUE(this->screen_->copyRightSpecifier()
                        ->propertyForKey("footerText")
                        .stringOr()
                        .starts_with("Version "));
    }
};

}  // namespace quietrix
