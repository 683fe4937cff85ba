// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <source_location>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/foundation/NotificationCenter.h"
#include "platform/preferences/PSListController.h"
#include "platform/preferences/PSTableCell.h"
#include "platform/uikit/UIAlertController.h"
#include "platform/uikit/UINavigationController.h"
#include "tests/doubles/Phone.h"
#include "tests/doubles/Required.h"

namespace doubles {

/// Where a screen stands when it has been opened: alone in the window's stack, pushed above another screen,
/// or presented by one in a stack of its own.
enum class Place { First, AboveAnother, Presented };

/// A phone with one screen open, which a row has opened or none, for the tests of that screen. What looks for
/// a row or its cell ends the test when it is not there, and names the rows that are; what asks whether one
/// is there is indexOf.
///
/// `Screen` is the screen's class, `ThePhone` the phone's: Phone, or PluginPhone for a screen of the plug-in.
template <class Screen, class ThePhone>
class ScreenFixture : public testing::Test {
  protected:
    using Where = std::source_location;

    /// The link row that the screen will be opened by.
    void makeOpeningRow(std::string_view name, platform::Value userInfo) {
        row_ = platform::PSSpecifier::preferenceSpecifierNamed_target_set_get_detail_cell_edit(
            name, nullptr, {}, {}, Screen::staticClass().name(), platform::PSCellType::Link, "");
        row_->setUserInfo(std::move(userInfo));
    }
    /// Shows a new screen, or the given one, and lets everything settle; the journal is empty then.
    void openScreen(Place place, std::shared_ptr<Screen> screen = std::make_shared<Screen>()) {
        screen_ = std::move(screen);
        if (row_) screen_->setSpecifier(row_);
        if (place == Place::First) {
            navigation_ = phone_.show(screen_);
        } else {
            const auto beneath = std::make_shared<platform::PSViewController>();
            navigation_ = phone_.show(beneath);
            if (place == Place::Presented) {
                beneath->presentViewController_animated_completion(
                    platform::UINavigationController::initWithRootViewController(screen_), false, nullptr);
            } else {
                navigation_->pushViewController_animated(screen_, false);
            }
        }
        phone_.drain();
        phone_.takeEvents();
    }

    /// The row's index; -1 when no row has the identifier.
    std::int64_t indexOf(std::string_view identifier) {
        const auto& rows = *screen_->specifiers();
        for (std::size_t index = 0; index < rows.size(); ++index) {
            if (rows[index]->identifier() == identifier) return static_cast<std::int64_t>(index);
        }
        return -1;
    }
    std::shared_ptr<platform::PSSpecifier> rowOf(std::string_view identifier,
                                                 const Where& where = Where::current()) {
        return rowAt(indexThere(identifier, where), where);
    }
    platform::IndexPath pathOf(std::string_view identifier, const Where& where = Where::current()) {
        return *required(screen_->indexPathForIndex(indexThere(identifier, where)), where);
    }
    std::shared_ptr<platform::PSTableCell> cellOf(std::string_view identifier,
                                                  const Where& where = Where::current()) {
        return cellAt(indexThere(identifier, where), where);
    }
    /// The same by the index, for rows without an identifier.
    std::shared_ptr<platform::PSSpecifier> rowAt(std::int64_t index, const Where& where = Where::current()) {
        const auto row = screen_->specifierAtIndex(index);
        if (!row) endTest("There is no row " + std::to_string(index) + ". There are: " + rowsThere(), where);
        return row;
    }
    std::shared_ptr<platform::PSTableCell> cellAt(std::int64_t index, const Where& where = Where::current()) {
        const auto cell = screen_->cellAtIndex(index);
        if (!cell)
            endTest("There is no cell " + std::to_string(index) + ". There are: " + rowsThere(), where);
        return cell;
    }
    std::string footerAt(std::int64_t index, const Where& where = Where::current()) {
        return rowAt(index, where)->propertyForKey("footerText").stringOr();
    }

    /// What the user's own move of the row's control does, without what follows on the run loop. The events
    /// before it are dropped.
    void move(std::string_view identifier, const platform::Value& value,
              const Where& where = Where::current()) {
        const auto cell = cellOf(identifier, where);
        phone_.takeEvents();
        static_cast<void>(required(cell->userMovedControl(value), where));
    }
    /// What the user's tap on the row does.
    void tap(std::string_view identifier, const Where& where = Where::current()) {
        tapPath(pathOf(identifier, where), where);
    }
    void tapPath(platform::IndexPath path, const Where& where = Where::current()) {
        if (!screen_->rowCanBeSelected(path)) endTest("The row cannot be tapped.", where);
        screen_->table()->selectRowAtIndexPath(path);
        screen_->tableView_didSelectRowAtIndexPath(screen_->table(), path);
    }
    static void post(std::string_view name) {
        platform::NotificationCenter::defaultCenter().postNotificationName_object_userInfo(name, nullptr,
                                                                                           nullptr);
    }
    /// The alert or sheet on top of everything; null when something else is.
    static std::shared_ptr<platform::UIAlertController> alert() { return shownAlert(); }
    /// Takes the screen away, and says whether it is gone for good.
    bool closesForGood() {
        phone_.drain();
        const std::weak_ptr<Screen> screen = screen_;
        screen_.reset();
        if (navigation_->viewControllers().size() > 1) {
            navigation_->popViewControllerAnimated(false);
        } else {
            navigation_.reset();
            phone_.show(nullptr);
        }
        phone_.drain();
        return screen.expired();
    }

    ThePhone phone_;
    std::shared_ptr<platform::PSSpecifier> row_;
    std::shared_ptr<Screen> screen_;
    std::shared_ptr<platform::UINavigationController> navigation_;

  private:
    std::int64_t indexThere(std::string_view identifier, const Where& where) {
        const std::int64_t index = indexOf(identifier);
        if (index < 0) {
            endTest("There is no row \"" + std::string(identifier) + "\". There are: " + rowsThere(), where);
        }
        return index;
    }
    /// The rows as a message names them: by their identifiers, by their names where they have none.
    std::string rowsThere() {
        std::string text;
        for (const auto& row : *screen_->specifiers()) {
            if (!text.empty()) text += ", ";
            const auto identifier = row->identifier();
            text += identifier ? *identifier : "(" + row->name().value_or("") + ")";
        }
        return text.empty() ? "none" : text;
    }
};

}  // namespace doubles
