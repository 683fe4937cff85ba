// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/preferences/PSListController.h"
#include "platform/uikit/UIApplication.h"
#include "platform/uikit/UINavigationController.h"
#include "tests/doubles/Phone.h"
#include "tests/doubles/Rows.h"

namespace doubles {

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
    ShownList(const ShownList&) = delete;
    ShownList& operator=(const ShownList&) = delete;

    void show(platform::SpecifierList rows) {
        list->given = std::move(rows);
        navigation = phone.show(list);
        phone.takeEvents();
    }
    void tap(std::int64_t index) {
        list->tableView_didSelectRowAtIndexPath(list->table(), list->indexPathForIndex(index).value());
    }
    static std::shared_ptr<platform::UIViewController> top() { return Phone::top(); }

    Phone phone;
    std::shared_ptr<GivenList> list;
    std::shared_ptr<platform::UINavigationController> navigation;
};

}  // namespace doubles
