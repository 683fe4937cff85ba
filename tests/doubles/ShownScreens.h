// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/uikit/UIApplication.h"
#include "platform/uikit/UINavigationController.h"
#include "tests/doubles/Phone.h"
#include "tests/doubles/RecordedScreen.h"

namespace doubles {

/// A phone whose window shows a navigation controller with one recorded screen, "root".
class ShownScreens {
  public:
    ShownScreens() {
        navigation = phone.show(root);
        calls.clear();
        phone.takeEvents();
    }
    /// The screens write into `calls` to their end.
    ~ShownScreens() { phone.show(nullptr); }
    ShownScreens(const ShownScreens&) = delete;
    ShownScreens& operator=(const ShownScreens&) = delete;

    std::shared_ptr<RecordedScreen> screen(const std::string& name) {
        return std::make_shared<RecordedScreen>(name, calls);
    }
    static std::shared_ptr<platform::UIViewController> top() { return Phone::top(); }
    /// The journal's events since the last call, as "present UIAlertController".
    std::vector<std::string> takeJournal() {
        std::vector<std::string> lines;
        for (const auto& event : phone.takeEvents()) {
            lines.push_back(event.at("event").stringOr() + " " + event.at("class").stringOr());
        }
        return lines;
    }

    Phone phone;
    RecordedScreen::Calls calls;
    std::shared_ptr<RecordedScreen> root = std::make_shared<RecordedScreen>("root", calls);
    std::shared_ptr<platform::UINavigationController> navigation;
};

}  // namespace doubles
