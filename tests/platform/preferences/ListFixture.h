// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/preferences/PSListController.h"
#include "platform/uikit/UIApplication.h"
#include "platform/uikit/UINavigationController.h"
#include "tests/doubles/Phone.h"

namespace doubles {

/// Receives what rows set, get and send.
class RowTarget : public platform::Object {
  public:
    void setPreferenceValue(const platform::Value& value, const std::shared_ptr<platform::PSSpecifier>& row) {
        stored = value;
        ++writes;
        written.push_back(row);
    }
    platform::Value preferenceValue(const std::shared_ptr<platform::PSSpecifier>& /*row*/) { return stored; }
    void pressed(const std::shared_ptr<platform::PSSpecifier>& row) { presses.push_back(row); }

    platform::Value stored;
    int writes = 0;
    std::vector<std::shared_ptr<platform::PSSpecifier>> written;
    std::vector<std::shared_ptr<platform::PSSpecifier>> presses;

    static platform::PSSpecifier::Setter setter() {
        return platform::method("setPreferenceValue:specifier:", &RowTarget::setPreferenceValue);
    }
    static platform::PSSpecifier::Getter getter() {
        return platform::method("preferenceValue:", &RowTarget::preferenceValue);
    }
    static platform::PSSpecifier::Action action() {
        return platform::method("pressed:", &RowTarget::pressed);
    }
};

inline std::shared_ptr<platform::PSSpecifier> makeRow(
    std::string_view name, platform::PSCellType type = platform::PSCellType::StaticText,
    std::string_view detail = {}) {
    return platform::PSSpecifier::preferenceSpecifierNamed_target_set_get_detail_cell_edit(
        name, nullptr, {}, {}, detail, type, {});
}

/// A row whose setter and getter are the target's.
inline std::shared_ptr<platform::PSSpecifier> makeControlRow(std::string_view name, platform::PSCellType type,
                                                             const std::shared_ptr<RowTarget>& target) {
    return platform::PSSpecifier::preferenceSpecifierNamed_target_set_get_detail_cell_edit(
        name, target, RowTarget::setter(), RowTarget::getter(), {}, type, {});
}

inline std::shared_ptr<platform::PSSpecifier> makeGroup(std::string_view name) {
    return platform::PSSpecifier::groupSpecifierWithName(name);
}

/// A list screen with the rows that the test gives it; each build takes them anew.
class GivenList : public platform::PSListController {
  public:
    platform::SpecifierArray specifiers() override {
        if (!specifiers_ || specifiers_->empty()) {
            ++builds;
            specifiers_ = std::make_shared<platform::SpecifierList>(given);
        }
        return specifiers_;
    }
    void replaceRows(platform::SpecifierList rows) {
        specifiers_ = std::make_shared<platform::SpecifierList>(std::move(rows));
    }
    std::vector<std::string> names() {
        std::vector<std::string> found;
        for (const auto& row : *specifiers()) found.push_back(row->name().value_or("(none)"));
        return found;
    }

    platform::SpecifierList given;
    int builds = 0;
};

/// A phone that shows a list screen, on a stack, in its window.
class ShownList {
  public:
    explicit ShownList(std::shared_ptr<GivenList> screen = std::make_shared<GivenList>())
        : list(std::move(screen)) {}
    ~ShownList() { platform::UIApplication::sharedApplication().setRootViewController(nullptr); }
    ShownList(const ShownList&) = delete;
    ShownList& operator=(const ShownList&) = delete;

    void show(platform::SpecifierList rows) {
        list->given = std::move(rows);
        navigation = platform::UINavigationController::initWithRootViewController(list);
        platform::UIApplication::sharedApplication().setRootViewController(navigation);
        phone.takeEvents();
    }
    void tap(std::int64_t index) {
        list->tableView_didSelectRowAtIndexPath(list->table(), list->indexPathForIndex(index).value());
    }
    static std::shared_ptr<platform::UIViewController> top() {
        return platform::UIApplication::sharedApplication().topmostPresented();
    }

    Phone phone;
    std::shared_ptr<GivenList> list;
    std::shared_ptr<platform::UINavigationController> navigation;
};

}  // namespace doubles
