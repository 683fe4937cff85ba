// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "platform/foundation/NotificationCenter.h"
#include "profile/model/QXProfilesManager.h"
#include "tests/shell/phone/PluginPhone.h"

namespace quietrix {

/// A picker on a phone, opened by a row whose user info holds the profile that a test asks for.
template <class Screen>
class PickerFixture : public testing::Test {
  protected:
    /// Stores the profile first, unless it is a new one; `others` go into the user info beside it.
    void open(platform::Dictionary others = {}) {
        if (!profile_->isNewProfile()) {
            QXProfilesManager::sharedManager()->addProfile_success_failure(profile_, nullptr, nullptr);
            phone_.drain();
            profile_ = stored(false);
        }
        others["profile"] = profile_;
        row_ = platform::PSSpecifier::preferenceSpecifierNamed_target_set_get_detail_cell_edit(
            "Condition", nullptr, {}, {}, Screen::staticClass().name(), platform::PSCellType::Link, "");
        row_->setUserInfo(std::move(others));
        screen_ = std::make_shared<Screen>();
        screen_->setSpecifier(row_);
        navigation_ = phone_.show(std::make_shared<platform::PSViewController>());
        navigation_->pushViewController_animated(screen_, false);
        phone_.drain();
        phone_.takeEvents();
    }
    std::shared_ptr<QXProfile> stored(bool reload = true) {
        return QXProfilesManager::sharedManager()->profileByIdentifier_shouldReload(profile_->identifier(),
                                                                                    reload);
    }
    /// The profile that the opening row holds now.
    std::shared_ptr<QXProfile> shown() { return row_->userInfo()["profile"].template objectAs<QXProfile>(); }
    void storeOtherValue(std::string_view key, const platform::Value& value) {
        const auto theirs = QXProfile::profileWithValues(profile_->storedValues());
        theirs->setValue_forKey(value, key);
        QXProfilesManager::sharedManager()->updateProfile_success_failure(theirs, nullptr, nullptr);
    }
    void post(std::string_view name) {
        platform::NotificationCenter::defaultCenter().postNotificationName_object_userInfo(name, nullptr,
                                                                                           nullptr);
    }
    std::size_t updates() {
        phone_.drain();
        return phone_.takeEvents("store").size();
    }
    void failWrites() { phone_.files->failWrites("No space left on device", std::string(profilesPath)); }
    static std::shared_ptr<platform::UIAlertController> alert() { return doubles::shownAlert(); }
    /// Takes the screen away, and says whether it is gone for good.
    bool closesForGood() {
        phone_.drain();
        const std::weak_ptr<Screen> screen = screen_;
        screen_.reset();
        navigation_->popViewControllerAnimated(false);
        phone_.drain();
        return screen.expired();
    }

    doubles::PluginPhone phone_;
    std::shared_ptr<QXProfile> profile_ = QXProfile::defaultProfile();
    std::shared_ptr<platform::PSSpecifier> row_;
    std::shared_ptr<Screen> screen_;
    std::shared_ptr<platform::UINavigationController> navigation_;
};

/// The same for a picker that is a list: rows by their identifiers.
template <class Screen>
class ListPickerFixture : public PickerFixture<Screen> {
  protected:
    std::int64_t indexOf(std::string_view identifier) {
        const auto& rows = *this->screen_->specifiers();
        for (std::size_t index = 0; index < rows.size(); ++index) {
            if (rows[index]->identifier() == identifier) return static_cast<std::int64_t>(index);
        }
        return -1;
    }
    std::shared_ptr<platform::PSTableCell> cellOf(std::string_view identifier) {
        return this->screen_->cellAtIndex(indexOf(identifier));
    }
    bool isChecked(std::string_view identifier) {
        return cellOf(identifier)->accessoryType() == platform::UITableViewCellAccessoryCheckmark;
    }
    void tap(std::string_view identifier) {
        const auto path = this->screen_->indexPathForIndex(indexOf(identifier));
        ASSERT_TRUE(path.has_value()) << identifier;
        ASSERT_TRUE(this->screen_->rowCanBeSelected(*path));
        this->screen_->table()->selectRowAtIndexPath(*path);
        this->screen_->tableView_didSelectRowAtIndexPath(this->screen_->table(), *path);
    }
    /// Every row but the copyright row, which must be the last.
    platform::SpecifierList ownRows() {
        platform::SpecifierList rows = *this->screen_->specifiers();
        EXPECT_EQ("CopyRightHeader", rows.back()->identifier());
        rows.pop_back();
        return rows;
    }
    /// The hooks that every picker answers alike.
    void expectProductsChrome() {
        EXPECT_TRUE(this->screen_->hasCustomNavigationBarColor());
        EXPECT_EQ("nav", this->screen_->customNavigationBarColor()->patternImage()->name());
        EXPECT_EQ("nav", this->navigation_->navigationBar()->barTintColor()->patternImage()->name());
        EXPECT_TRUE(this->screen_->twitterMessage().starts_with("I'm Loving #Quietrix"));
        EXPECT_EQ("twitter", this->screen_->twitterImage()->name());
        ASSERT_NE(nullptr, this->screen_->copyRightSpecifier());
        EXPECT_TRUE(this->screen_->copyRightSpecifier()
                        ->propertyForKey("footerText")
                        .stringOr()
                        .starts_with("Version "));
    }
};

}  // namespace quietrix
