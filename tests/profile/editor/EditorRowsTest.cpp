// SPDX-License-Identifier: MIT
// The editor's rows as they are written down here, laid beside those that the screen builds in each of its
// states.
#include <set>
#include <sstream>

#include "profile/cells/QXSliderCell.h"
#include "shell/base/Localization.h"
#include "shell/base/ProductInfo.h"
#include "tests/profile/editor/EditorFixture.h"
#include "tests/profile/editor/WrittenRows.h"

namespace quietrix {
namespace {

using doubles::required;
using platform::PSSpecifier;
using platform::Value;

constexpr const char* copyRightRow = "- | 0 | CopyRightHeader |";

std::string described(const Value& value) {
    if (const auto image = value.objectAs<platform::UIImage>()) return image->name();
    if (const auto flag = value.boolean()) return *flag ? "1" : "0";
    std::string text = value.description();
    std::ranges::replace(text, '\n', '/');
    return text;
}

std::string userInfo(const PSSpecifier& row, const std::shared_ptr<QXProfile>& profile) {
    const Value& info = row.userInfo();
    if (info.isNil()) return "nil";
    if (info.objectAs<QXProfile>() == profile) return "QXProfile";
    std::string keys;
    for (const auto& [key, value] : *required(info.dictionary())) {
        keys += (keys.empty() ? "" : " ") + key;
        if (key == "profile" && value.objectAs<QXProfile>() != profile) keys += " of another";
        if (key == "calendars" && value.dictionary() == nullptr) keys += " that are none";
    }
    return keys;
}

std::string printed(const PSSpecifier& row, const std::shared_ptr<QXProfile>& profile) {
    std::string properties;
    for (const auto& [key, value] : row.properties()) {
        if (key == "label" || key == "cellClass") continue;
        properties += (properties.empty() ? "" : " ") + key + "=" + described(value);
    }
    std::ostringstream line;
    line << row.name().value_or("-") << " | " << std::to_underlying(row.cellType()) << " | "
         << row.identifier().value_or("") << " | " << row.setter().selector() << " | "
         << row.getter().selector() << " | " << row.detailControllerClass() << " | "
         << row.propertyForKey("cellClass").stringOr() << " | " << properties << " | "
         << userInfo(row, profile);
    return line.str();
}

class EditorRows : public EditorFixture {
  protected:
    /// The screen's table without the copyright row that must end it.
    std::vector<std::string> table() {
        std::vector<std::string> lines;
        for (const auto& row : *screen_->specifiers()) lines.push_back(printed(*row, profile_));
        if (lines.empty() || !lines.back().starts_with(copyRightRow))
            doubles::endTest("The last row is not the copyright row.", Where::current());
        lines.pop_back();
        return lines;
    }
    /// The written table without the rows of these names, as they stand at these indices.
    static std::vector<std::string> writtenWithout(const std::set<std::size_t>& indices) {
        std::vector<std::string> lines;
        const auto all = written();
        for (std::size_t index = 0; index < all.size(); ++index)
            if (!indices.contains(index)) lines.push_back(all[index]);
        return lines;
    }
    bool showsTone() { return indexOf("alertToneIdentifier") >= 0; }
};

TEST_F(EditorRows, enabledTimedWithAlert_areAllTheWrittenOnes) {
    open();
    EXPECT_EQ(25U, screen_->specifiers()->size());
    EXPECT_EQ(written(), table());
}

TEST_F(EditorRows, disabled_areTheFirstFour) {
    profile_->setEnabled(false);
    open();
    const auto all = written();
    EXPECT_EQ(std::vector<std::string>(all.begin(), all.begin() + alwaysThere), table());
}

TEST_F(EditorRows, allDay_haveNoActiveHours) {
    profile_->setAllDay(true);
    open();
    EXPECT_EQ(writtenWithout({6}), table());
}

TEST_F(EditorRows, alertOff_haveNoTone) {
    profile_->setPlayAlert(false);
    open();
    EXPECT_EQ(writtenWithout({13}), table());
}

TEST_F(EditorRows, withoutTheStatusBarLibrary_goFromDoNotDisturbToNetworks) {
    phone_.libraries->present.clear();
    open();
    EXPECT_EQ(writtenWithout({18, 19}), table());
}

TEST_F(EditorRows, statusBarLibrary_isProbedForEachBuild) {
    phone_.libraries->present.clear();
    open();
    phone_.libraries->present.insert(statusBarLibrary);
    screen_->reloadSpecifiers();
    EXPECT_EQ(written(), table());
}

TEST_F(EditorRows, newProfile_hasTheSameRows) {
    profile_->setNewProfile(true);
    open();
    EXPECT_EQ(written(), table());
}

TEST_F(EditorRows, alertOnButDisabled_buildNoTone) {
    profile_->setEnabled(false);
    open();
    EXPECT_FALSE(std::ranges::any_of(screen_->alertSpecifiers(), [](const auto& row) {
        return row->identifier() == "alertToneIdentifier";
    }));
    profile_->setEnabled(true);
    EXPECT_TRUE(std::ranges::any_of(screen_->alertSpecifiers(), [](const auto& row) {
        return row->identifier() == "alertToneIdentifier";
    }));
}

TEST_F(EditorRows, builders_makeNewRowsWhileTheCacheKeepsIts) {
    open();
    EXPECT_EQ(screen_->profilesSpecifiers(), screen_->profilesSpecifiers());
    EXPECT_NE(screen_->activeTimeSpecifiers().at(0), screen_->activeTimeSpecifiers().at(0));
    EXPECT_NE(screen_->profileEnabledSpecifiers().at(0), screen_->profileEnabledSpecifiers().at(0));
    const auto cached = screen_->profilesSpecifiers();
    screen_->reloadSpecifiers();
    EXPECT_NE(cached, screen_->profilesSpecifiers());
    ASSERT_FALSE(screen_->profilesSpecifiers()->empty());
    EXPECT_EQ("title", screen_->profilesSpecifiers()->front()->identifier())
        << "the leading group and the copyright row are not the cache's";
    EXPECT_EQ("calendarIdentifiers", screen_->profilesSpecifiers()->back()->identifier());
}

TEST_F(EditorRows, speakerImages_areTheSystemsAtTheScreensScale) {
    for (const auto& [scale, suffix] : std::vector<std::pair<double, std::string>>{
             {1.0, "@2x"}, {2.0, "@2x"}, {2.5, "@3x"}, {3.0, "@3x"}}) {
        phone_.facts->scale = scale;
        if (!screen_) open();
        for (const auto& row : screen_->ringerVolumeSpecifiers()) {
            const auto left = row->propertyForKey("leftImage").objectAs<platform::UIImage>();
            const auto right = row->propertyForKey("rightImage").objectAs<platform::UIImage>();
            if (row->cellType() != platform::PSCellType::Slider) continue;
            ASSERT_NE(nullptr, left);
            ASSERT_NE(nullptr, right);
            EXPECT_EQ("SpeakerMute" + suffix, left->name()) << scale;
            EXPECT_EQ("SpeakerMax" + suffix, right->name()) << scale;
        }
    }
}

TEST_F(EditorRows, toneCell_showsTheLocalisedLastPieceInLightGrey) {
    phone_.facts->languages = {"de"};
    const std::vector<std::pair<std::optional<std::string>, std::string>> cases{
        {"texttone:Calendar Alert", localized("Calendar Alert")},
        {"a:b:Calendar Alert", localized("Calendar Alert")},
        {"Calendar Alert", localized("Calendar Alert")},
        {"Nobody Knows This", "Nobody Knows This"},
        {std::nullopt, localized("None")}};
    open();
    for (const auto& [identifier, shown] : cases) {
        profile_->setAlertToneIdentifier(identifier);
        screen_->reloadSpecifiers();
        const auto& label = cellOf("alertToneIdentifier")->detailTextLabel();
        EXPECT_EQ(shown, label->text());
        EXPECT_TRUE(required(label->textColor())->isEqual(*platform::UIColor::lightGrayColor()));
    }
    EXPECT_NE("None", localized("None")) << "the language must differ for this test to mean something";
}

TEST_F(EditorRows, otherCells_haveNoDetail) {
    open();
    for (const auto* identifier : {"wifiNetworks", "calendarIdentifiers", "vibrate"})
        EXPECT_EQ(std::nullopt, cellOf(identifier)->detailTextLabel()->text()) << identifier;
}

TEST_F(EditorRows, timeRows_haveTheirDetailInBlueAndTheTextLeftAlone) {
    open();
    const auto blue = platform::UIColor::colorWithRed_green_blue_alpha(0, 0.478431, 1, 1);
    const auto row = rowOf("wifiNetworks");
    const auto path = pathOf("wifiNetworks");
    const auto& label = cellOf("wifiNetworks")->detailTextLabel();
    for (const auto* identifier : {"startTime", "endTime"}) {
        label->setTextColor(nullptr);
        label->setText("at noon");
        row->setIdentifier(identifier);
        ASSERT_EQ(
            label,
            required(screen_->tableView_cellForRowAtIndexPath(screen_->table(), path))->detailTextLabel());
        ASSERT_NE(nullptr, label->textColor()) << identifier;
        EXPECT_TRUE(label->textColor()->isEqual(*blue)) << identifier;
        EXPECT_EQ("at noon", label->text()) << identifier;
    }
}

TEST_F(EditorRows, estimatedHeights_areTheSlidersOwnElseTheBases) {
    open();
    const auto estimate = [this](std::int64_t index) {
        return screen_->tableView_estimatedHeightForRowAtIndexPath(
            screen_->table(), required(screen_->indexPathForIndex(index)).value());
    };
    EXPECT_EQ(QXSliderCell::defaultCellHeight(), estimate(8));
    EXPECT_EQ(QXSliderCell::defaultCellHeight(), estimate(9));
    EXPECT_EQ(64.0, estimate(6));
    EXPECT_EQ(44.0, estimate(3));
    // Whatever height the slider's row itself claims.
    rowOf("ringerVolume")->setProperty_forKey(99.0, "height");
    EXPECT_EQ(QXSliderCell::defaultCellHeight(), estimate(9));
}

TEST_F(EditorRows, appearance_isTheProducts) {
    open();
    EXPECT_EQ("Work", screen_->title());
    EXPECT_TRUE(screen_->hasCustomNavigationBarColor());
    EXPECT_EQ("nav", required(required(screen_->customNavigationBarColor())->patternImage())->name());
    EXPECT_EQ("nav",
              required(required(navigation_->navigationBar()->barTintColor())->patternImage())->name());
    EXPECT_EQ("twitter", required(screen_->twitterImage())->name());
    EXPECT_TRUE(screen_->twitterMessage().starts_with("I'm Loving #Quietrix"));
    EXPECT_EQ(rowOf("CopyRightHeader"), screen_->copyRightSpecifier());
    EXPECT_TRUE(rowOf("CopyRightHeader")->propertyForKey("footerText").stringOr().starts_with("Version "));
}

TEST_F(EditorRows, yearSetAlready_isTheCopyrightRowsAndIsNotComputedAgain) {
    currentYear() = 1999;
    open();
    const std::string notice = rowOf("CopyRightHeader")->propertyForKey("footerText").stringOr();
    EXPECT_NE(std::string::npos, notice.find("1999")) << notice;
    EXPECT_EQ(1999, currentYear());
}

TEST_F(EditorRows, shareMessage_comesFromTheHostApplicationOnly) {
    phone_.facts->languages = {"de"};
    open();
    const std::string german = screen_->twitterMessage();
    EXPECT_FALSE(german.starts_with("I'm Loving"));
    phone_.removePluginBundle();
    EXPECT_EQ(german, screen_->twitterMessage());
}

}  // namespace
}  // namespace quietrix
