// SPDX-License-Identifier: MIT
#include "settings/state/StateWriter.h"

#include <algorithm>
#include <string>
#include <utility>

#include "platform/uikit/UIApplication.h"
#include "settings/application/LinkedScreens.h"
#include "settings/application/ListedServices.h"
#include "settings/state/PickerWriter.h"
#include "settings/state/PresentedWriter.h"
#include "settings/state/RowWriter.h"

namespace settings {

using platform::Array;
using platform::Dictionary;
using platform::UIViewController;
using platform::Value;

namespace {

Value titleOf(UIViewController& screen) {
    const auto& title = screen.navigationItem()->title();
    return ScreenValues::text(title ? title : screen.title());
}

Value specifierOf(const UIViewController& screen) {
    const auto* opened = dynamic_cast<const platform::PSViewController*>(&screen);
    return opened ? ScreenValues::specifier(opened->specifier()) : Value();
}

Value nameOf(ListedService service) {
    switch (service) {
        case ListedService::Calendars:
            return "calendars";
        case ListedService::Networks:
            return "networks";
        case ListedService::Tones:
            return "tones";
        case ListedService::None:
            break;
    }
    return nullptr;
}

void writeFaults(const device::Faults& faults, Dictionary& state) {
    Array names;
    for (const device::Fault fault : faults.active()) names.emplace_back(device::Faults::nameOf(fault));
    state["faults"] = std::move(names);
    if (faults.has(device::Fault::Slow)) state["faultMilliseconds"] = faults.delay().count();
}

}  // namespace

Dictionary StateWriter::state(RowWindow window) const {
    const TopScreen top = TopScreen::now();
    Dictionary state{
        {"screen", screen(top, window)}, {"presented", presentedValue(top.presented)}, {"faults", Array()}};
    if (application_.phone()) writeFaults(application_.phone()->faults(), state);
    if (!application_.build().isNil()) state["build"] = application_.build();
    return state;
}

Value StateWriter::screen(const TopScreen& top, RowWindow window) const {
    if (!top.screen) return nullptr;
    UIViewController& screen = *top.screen;
    // A screen's view is loaded before it is looked at: that is when a screen builds its rows.
    screen.view();
    Array stack;
    for (const auto& below : top.navigation->viewControllers()) stack.emplace_back(below->getClass().name());

    std::int64_t count = 0;
    Array rows;
    if (const auto list = top.list()) {
        count = static_cast<std::int64_t>(list->specifiers()->size());
        const RowWriter writer(values_, *list);
        const std::int64_t from = std::min(window.from, count);
        const std::int64_t end = from + std::min(window.count, count - from);
        rows.reserve(static_cast<std::size_t>(end - from));
        for (std::int64_t index = from; index < end; ++index) rows.push_back(writer.row(index));
    }
    return Dictionary{{"id", screen.number()},
                      {"class", screen.getClass().name()},
                      {"title", titleOf(screen)},
                      {"specifier", specifierOf(screen)},
                      {"links", links(top)},
                      {"missing", nameOf(missingService(application_.bundle(), top))},
                      {"stack", std::move(stack)},
                      {"modals", top.modals},
                      {"bar", bar(top)},
                      {"editing", screen.isEditing()},
                      {"count", count},
                      {"rows", std::move(rows)},
                      {"pane", timePickerValue(top.screen)},
                      {"tones", tonePickerValue(top.screen)}};
}

Value StateWriter::links(const TopScreen& top) const {
    Array links;
    for (const LinkedScreen& link : linkedScreens(application_.bundle(), top)) {
        links.emplace_back(Dictionary{{"title", link.title}, {"class", link.className}});
    }
    return links;
}

Value StateWriter::bar(const TopScreen& top) const {
    const auto& bar = *top.navigation->navigationBar();
    const auto& item = *top.screen->navigationItem();
    return Dictionary{{"tint", values_.colour(bar.tintColor())},
                      {"barTint", values_.colour(bar.barTintColor())},
                      {"statusBarStyle", platform::UIApplication::sharedApplication().statusBarStyle()},
                      {"titleView", titleView(item.titleView().get())},
                      {"titleFade", titleFade(item.titleView().get())},
                      {"back", backButton(top)},
                      {"left", barItems(item.leftBarButtonItems())},
                      {"right", barItems(item.rightBarButtonItems())}};
}

Value StateWriter::titleView(const platform::UIView* view) const {
    if (const auto* picture = dynamic_cast<const platform::UIImageView*>(view); picture && picture->image()) {
        return Dictionary{{"image", values_.image(picture->image())}};
    }
    if (const auto* label = dynamic_cast<const platform::UILabel*>(view)) {
        return Dictionary{{"label", label->text().value_or("")}};
    }
    return nullptr;
}

double StateWriter::titleFade(const platform::UIView* view) {
    return view && view->fade() ? view->fade()->seconds : 0;
}

Value StateWriter::backButton(const TopScreen& top) const {
    const auto& stack = top.navigation->viewControllers();
    if (stack.size() < 2) return nullptr;
    UIViewController& beneath = *stack[stack.size() - 2];
    const auto& item = beneath.navigationItem()->backBarButtonItem();
    // An item has a title or an image, and either takes the place of the screen's title.
    const bool hasFace = item && (item->title() || item->image());
    Value title = hasFace ? Value(item->title().value_or("")) : titleOf(beneath);
    if (title.isNil()) title = "";
    return Dictionary{{"title", title}, {"image", item ? values_.image(item->image()) : Value()}};
}

Value StateWriter::barItems(const platform::UINavigationItem::Items& items) const {
    Array array;
    for (const auto& item : items) array.push_back(values_.barItem(*item));
    return array;
}

}  // namespace settings
