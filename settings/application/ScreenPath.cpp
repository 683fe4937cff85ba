// SPDX-License-Identifier: MIT
#include "settings/application/ScreenPath.h"

#include <algorithm>
#include <utility>

#include "platform/uikit/UIApplication.h"
#include "settings/application/LinkedScreens.h"
#include "settings/application/RowKeyValue.h"
#include "settings/application/TopScreen.h"

namespace settings {

using platform::Array;
using platform::Dictionary;
using platform::PSListController;
using platform::UINavigationController;
using platform::Value;

namespace {

platform::RowKey openerOf(const platform::UIViewController& screen) {
    const auto* opened = dynamic_cast<const platform::PSViewController*>(&screen);
    return opened && opened->specifier() ? opened->specifier()->rowKey() : 0;
}

/// Presses the row or the link that leads on; whether there is one.
bool goOn(const std::shared_ptr<platform::Bundle>& bundle, platform::RowKey opener,
          const std::string& className) {
    const TopScreen top = TopScreen::now();
    const auto list = top.list();
    if (!list) return false;
    const std::int64_t index = opener == 0 ? -1 : list->indexOfKey(opener);
    if (const auto path = index < 0 ? std::nullopt : list->indexPathForIndex(index)) {
        if (!list->rowCanBeSelected(*path)) return false;
        list->tableView_didSelectRowAtIndexPath(list->table(), *path);
        return true;
    }
    const auto links = linkedScreens(bundle, top);
    const auto link = std::ranges::find(links, className, &LinkedScreen::className);
    if (link == links.end()) return false;
    openLinkedScreen(*top.navigation, *link);
    return true;
}

}  // namespace

ScreenPath ScreenPath::now() {
    ScreenPath path;
    const TopScreen top = TopScreen::now();
    const auto window = std::dynamic_pointer_cast<UINavigationController>(
        platform::UIApplication::sharedApplication().rootViewController());
    if (!window) return path;
    const auto& stack = window->viewControllers();
    for (std::size_t i = 1; i < stack.size(); ++i) {
        Step step{stack[i]->getClass().name(), stack[i]->number(), openerOf(*stack[i]), std::nullopt};
        if (const auto list = std::dynamic_pointer_cast<PSListController>(stack[i]))
            step.keys = list->rowKeys();
        path.steps_.push_back(std::move(step));
    }
    if (top.presented) path.end_ = "What was presented is closed: " + top.presented->getClass().name() + ".";
    if (top.modals > 0)
        path.end_ = "The screen that was presented is closed: " + top.screen->getClass().name() + ".";
    return path;
}

ScreenPath ScreenPath::ofValue(const Value& value) {
    ScreenPath path;
    path.isFromElsewhere_ = true;
    const Value steps = value["steps"];
    if (steps.array() == nullptr) return path;
    for (const Value& each : *steps.array()) {
        Step step{each["class"].stringOr(), numberIn(each, "number"), numberIn(each, "opener"), std::nullopt};
        if (const Value rows = each["rows"]; !rows.isNil()) step.keys = rowKeysOfValue(rows);
        path.steps_.push_back(std::move(step));
    }
    if (const Value end = value["end"]; end.string() != nullptr) path.end_ = *end.string();
    return path;
}

Value ScreenPath::value() const {
    Array steps;
    for (const Step& step : steps_) {
        Dictionary entry{{"class", step.className}, {"number", step.number}, {"opener", step.opener}};
        if (step.keys) entry["rows"] = valueOfRowKeys(*step.keys);
        steps.emplace_back(std::move(entry));
    }
    return Dictionary{{"steps", std::move(steps)}, {"end", end_ ? Value(*end_) : Value()}};
}

std::optional<std::string> ScreenPath::follow(const std::shared_ptr<platform::Bundle>& bundle) const {
    for (std::size_t i = 0; i < steps_.size(); ++i) {
        const Step& step = steps_[i];
        if (i > 0 && !goOn(bundle, step.opener, step.className))
            return "Nothing opens the screen " + step.className + " any more.";
        const TopScreen top = TopScreen::now();
        const std::string arrived = top.screen ? top.screen->getClass().name() : "";
        if (arrived != step.className)
            return "In the place of the screen " + step.className + " is " + arrived + " now.";
        if (const auto list = top.list(); list && step.keys) list->takeOverRowKeys(*step.keys);
        if (isFromElsewhere_) top.screen->takeOverNumber(step.number);
    }
    return end_;
}

}  // namespace settings
