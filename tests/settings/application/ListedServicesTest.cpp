// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "settings/application/ListedServices.h"
#include "tests/settings/TestList.h"

namespace {

using fixtures::plainRow;
using fixtures::TestList;
using platform::PSCellType;
using settings::ListedService;
using settings::missingService;

constexpr const char* bundlePath = "/Library/PreferenceBundles/Listing.bundle";

/// A list screen on top, and a bundle whose Info list is the test's.
class ListedServicesTest : public testing::Test {
  protected:
    ListedServicesTest() {
        list_->setRows({});
        top_.screen = list_;
    }

    /// `entries` is what the Info list has under "ListedServices".
    ListedService missingWith(const std::string& entries) {
        phone_.files->put(
            std::string(bundlePath) + "/Info.plist",
            "<plist version=\"1.0\"><dict><key>ListedServices</key>" + entries + "</dict></plist>");
        return missingService(std::make_shared<platform::Bundle>(bundlePath), top_);
    }
    static std::string listing(const std::string& service, const std::string& screen = "TestList") {
        return "<array><dict><key>Screen</key><string>" + screen + "</string><key>Service</key><string>" +
               service + "</string></dict></array>";
    }
    void showARow(const platform::Value& userInfo) {
        auto row = plainRow("Row", PSCellType::Link);
        row->setUserInfo(userInfo);
        list_->setRows({platform::PSSpecifier::groupSpecifierWithName("Group"), std::move(row)});
    }

    doubles::Phone phone_;
    std::shared_ptr<TestList> list_ = std::make_shared<TestList>();
    settings::TopScreen top_;
};

}  // namespace

TEST_F(ListedServicesTest, Missing_rowsWithoutUserInfo_isTheServiceThatTheScreenLists) {
    showARow({});
    EXPECT_EQ(missingWith(listing("calendars")), ListedService::Calendars);
    EXPECT_EQ(missingWith(listing("networks")), ListedService::Networks);
}

TEST_F(ListedServicesTest, Missing_rowThatCarriesWhatItLists_isNone) {
    showARow(platform::Dictionary{{"SSID", "Attic"}});
    EXPECT_EQ(missingWith(listing("networks")), ListedService::None);
}

TEST_F(ListedServicesTest, Missing_tonesWithoutAPicker_areMissingWhateverTheRows) {
    showARow(platform::Dictionary{{"SSID", "Attic"}});
    EXPECT_EQ(missingWith(listing("tones")), ListedService::Tones);
}

TEST_F(ListedServicesTest, Missing_otherScreensAndUnknownEntries_areNone) {
    EXPECT_EQ(missingWith(listing("calendars", "OtherList")), ListedService::None);
    EXPECT_EQ(missingWith(listing("weather")), ListedService::None);
    EXPECT_EQ(missingWith("<string>calendars</string>"), ListedService::None);
    EXPECT_EQ(missingWith("<array><string>TestList</string></array>"), ListedService::None);
}

TEST_F(ListedServicesTest, Missing_noBundleOrNoScreen_isNone) {
    EXPECT_EQ(missingService(nullptr, top_), ListedService::None);
    top_.screen = nullptr;
    EXPECT_EQ(missingWith(listing("calendars")), ListedService::None);
}
