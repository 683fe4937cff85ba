// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/uikit/UIViewController.h"

namespace doubles {

/// A screen that writes down, under its own name, what its life cycle tells it; several share one list.
class RecordedScreen : public platform::UIViewController {
  public:
    using Calls = std::vector<std::string>;

    RecordedScreen(std::string name, Calls& calls) : name_(std::move(name)), calls_(calls) {}

    void loadView() override {
        note("load");
        UIViewController::loadView();
    }
    void viewDidLoad() override { note("loaded"); }
    void viewWillAppear(bool animated) override {
        UIViewController::viewWillAppear(animated);
        note("appears");
    }
    void viewWillDisappear(bool animated) override {
        UIViewController::viewWillDisappear(animated);
        hadNavigationWhenLeaving = static_cast<bool>(navigationController());
        note("disappears");
    }

    bool hadNavigationWhenLeaving = false;

  private:
    void note(const std::string& call) { calls_.push_back(name_ + " " + call); }

    std::string name_;
    Calls& calls_;
};

}  // namespace doubles
