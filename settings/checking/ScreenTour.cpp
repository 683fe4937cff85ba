// SPDX-License-Identifier: MIT
#include "settings/checking/ScreenTour.h"

#include <chrono>
#include <cmath>
#include <utility>

#include "platform/foundation/NotificationCenter.h"
#include "platform/foundation/RunLoop.h"
#include "settings/application/LinkedScreens.h"
#include "settings/application/TopScreen.h"
#include "settings/checking/BundleFiles.h"
#include "settings/checking/RowChecks.h"
#include "settings/checking/ViewChecks.h"

namespace settings {

using platform::PSListController;
using platform::UIViewController;

namespace {

std::string screenOnTop() {
    const auto screen = TopScreen::now().screen;
    return screen ? nameOfScreen(*screen) : "";
}

/// The key of each row that opens a screen, as long as the list's classes exist.
std::vector<platform::RowKey> openingRows(PSListController& list) {
    std::vector<platform::RowKey> keys;
    std::map<std::string, int> opened;
    for (std::int64_t index = 0; const auto row = list.specifierAtIndex(index); ++index) {
        const bool isLink = row->cellType() == platform::PSCellType::Link ||
                            row->cellType() == platform::PSCellType::LinkList;
        if (!isLink || !isScreenClass(row->detailControllerClass())) continue;
        if (++opened[row->detailControllerClass() + " " + row->editPaneClass()] <= ScreenTour::sameScreens)
            keys.push_back(list.keyAtIndex(index));
    }
    return keys;
}

}  // namespace

void ScreenTour::go(const std::string& language) {
    language_ = language;
    visit(0);
}

void ScreenTour::visit(std::size_t depth) {
    const std::string screen = screenOnTop();
    seen_.insert(screen);
    look(screen);
    if (depth == deepest) return;
    visitRows(depth);
    visitLinks(depth);
}

void ScreenTour::look(const std::string& screen) {
    const TopScreen top = TopScreen::now();
    if (const auto list = top.list()) {
        checkRows(*list, findings_, language_);
        checkCells(*list, rowsOfScreen, findings_, language_);
    } else {
        checkView(*top.screen, findings_, language_);
    }
    for (const LinkedScreen& link : linkedScreens(application_.bundle(), top)) {
        if (!isScreenClass(link.className))
            tell(FindingKind::MissingClass, screen, "", link.className,
                 "The link \"" + link.title + "\" opens the screen \"" + link.className +
                     "\", but there is no such class of that kind.");
    }
    tellMissing(screen);
}

void ScreenTour::tellMissing(const std::string& screen) {
    const AskedResources::Asked asked = asked_.take();
    for (const auto& [key, table] : asked.texts) {
        if (!asked_.hasText(language_, key, table))
            tell(FindingKind::MissingTranslation, screen, "", key,
                 "The text \"" + key + "\" is not in the table \"" + table + "\".");
    }
    for (const std::string& image : asked.images) {
        // The list of bundles asks every bundle for an icon, which none has to have.
        if (image != "icon" && missingScales(*application_.bundle(), image).size() == 3)
            tell(FindingKind::MissingImage, screen, "", image, "There is no image \"" + image + "\".");
    }
}

void ScreenTour::visitRows(std::size_t depth) {
    const auto list = TopScreen::now().list();
    if (!list) return;
    for (const platform::RowKey key : openingRows(*list)) {
        // What was opened before may have changed the list.
        const auto path = list->indexPathForIndex(list->indexOfKey(key));
        if (!path || !list->rowCanBeSelected(*path)) continue;
        const std::string row = nameOfRow(*list->specifierAtIndexPath(*path));
        open(depth, row, [&] { list->tableView_didSelectRowAtIndexPath(list->table(), *path); });
    }
}

void ScreenTour::visitLinks(std::size_t depth) {
    const auto links = linkedScreens(application_.bundle(), TopScreen::now());
    for (const LinkedScreen& link : links) {
        if (!isScreenClass(link.className)) continue;
        open(depth, link.title, [&] { openLinkedScreen(*TopScreen::now().navigation, link); });
    }
}

void ScreenTour::open(std::size_t depth, const std::string& row, const std::function<void()>& press) {
    const Observers before = observers();
    const auto navigation = TopScreen::now().navigation;
    const std::size_t height = navigation->viewControllers().size();
    // What was asked for until now was for this screen, not for the one that comes.
    tellMissing(screenOnTop());
    perform(screenOnTop(), row, "is opened", press);
    // A press may only have asked something; what it asked must not lie above the presses that follow.
    if (navigation->viewControllers().size() == height)
        navigation->dismissViewControllerAnimated_completion(false, {});
    if (navigation->viewControllers().size() != height + 1) return;
    const std::string opened = screenOnTop();
    visit(depth + 1);
    // A screen that has left by itself, or has something above it, is left by whatever it takes.
    navigation->dismissViewControllerAnimated_completion(false, {});
    if (navigation->viewControllers().size() != height + 1) return;
    leave(before,
          [&] { perform(opened, "", "is left", [&] { navigation->popViewControllerAnimated(true); }); });
}

ScreenTour::Observers ScreenTour::observers() const {
    Observers counts;
    for (const auto& [name, count] : platform::NotificationCenter::defaultCenter().observerCounts()) {
        const auto told = stayed_.find(name);
        counts[name] = static_cast<std::int64_t>(count) - (told == stayed_.end() ? 0 : told->second);
    }
    return counts;
}

void ScreenTour::leave(const Observers& before, const std::function<void()>& leaving) {
    const std::weak_ptr<UIViewController> screen = TopScreen::now().screen;
    const std::string name = screenOnTop();
    leaving();
    platform::RunLoop::main().drain();
    application_.keepUp();
    if (!screen.expired())
        tell(FindingKind::ScreenStays, name, "", "screen", "The screen is still there after it was left.");
    for (const auto& [notification, count] : observers()) {
        const auto known = before.find(notification);
        const std::int64_t more = count - (known == before.end() ? 0 : known->second);
        if (more <= 0) continue;
        stayed_[notification] += more;
        tell(FindingKind::ObserverStays, name, "", notification,
             "After it was left " + std::to_string(more) + " more observe \"" + notification +
                 "\" than before it was opened.");
    }
}

void ScreenTour::perform(const std::string& screen, const std::string& row, std::string_view what,
                         const std::function<void()>& command) {
    const auto start = std::chrono::steady_clock::now();
    command();
    platform::RunLoop::main().drain();
    const std::chrono::duration<double, std::milli> taken = std::chrono::steady_clock::now() - start;
    if (timings_ == Timings::Off || taken.count() <= slowMilliseconds) return;
    tell(FindingKind::SlowCommand, screen, row, std::string(what),
         "It takes " + std::to_string(std::llround(taken.count())) + " ms until it " + std::string(what) +
             ".");
}

void ScreenTour::tell(FindingKind kind, const std::string& screen, const std::string& row,
                      const std::string& subject, std::string text) {
    findings_.add({.kind = kind, .screen = screen, .row = row, .subject = subject, .text = std::move(text)},
                  language_);
}

}  // namespace settings
