// SPDX-License-Identifier: MIT
#include "settings/checking/ViewChecks.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/preferences/PSDetailController.h"
#include "platform/uikit/UIControl.h"
#include "platform/uikit/UILabel.h"
#include "settings/checking/RowChecks.h"
#include "settings/checking/TextWidth.h"

namespace settings {

using platform::UILabel;
using platform::UITableView;
using platform::UIView;

namespace {

/// What textWidth() may be wrong by.
constexpr double tolerance = 1.03;

std::string points(double number) {
    return std::to_string(std::llround(number));
}

/// Where a finding belongs.
struct Place {
    std::string screen;
    std::string row;
    Findings& findings;
    const std::string& language;

    void tell(FindingKind kind, const std::string& subject, std::string text) const {
        findings.add(
            {.kind = kind, .screen = screen, .row = row, .subject = subject, .text = std::move(text)},
            language);
    }
};

void checkLabel(const UILabel& label, const Place& place) {
    const std::string text = label.text().value_or("");
    if (text.empty()) return;
    const platform::Rect frame = label.frame();
    const double size = label.fontSize();
    if (label.numberOfLines() == 1) {
        const double width = textWidth(text, size);
        if (width <= frame.width * tolerance) return;
        place.tell(FindingKind::CutLabel, text,
                   "\"" + text + "\" is about " + points(width) + " points wide in a label of " +
                       points(frame.width) + ".");
        return;
    }
    const int lines = linesOfText(text, size, frame.width * tolerance);
    const int most = label.numberOfLines() == 0 ? lines : static_cast<int>(label.numberOfLines());
    const double height = std::min(lines, most) * lineHeight(size);
    if (lines <= most && height <= frame.height * tolerance) return;
    place.tell(FindingKind::CutLabel, text,
               "\"" + text + "\" takes about " + std::to_string(lines) + " lines, " +
                   points(lines * lineHeight(size)) + " points, in a label of " + points(frame.height) + ".");
}

void checkTarget(double width, double height, const std::string& subject, const Place& place) {
    if (width >= smallestTarget && height >= smallestTarget) return;
    place.tell(
        FindingKind::SmallTarget, subject,
        "A finger has to meet " + subject + " of " + points(width) + " by " + points(height) + " points.");
}

void checkLabels(const UIView& view, const Place& place) {
    for (const auto& child : view.subviews()) {
        if (child->isHidden() || child->alpha() == 0) continue;
        if (const auto* label = dynamic_cast<const UILabel*>(child.get())) checkLabel(*label, place);
        checkLabels(*child, place);
    }
}

void checkTable(UITableView& table, const Place& place);

void checkViews(const UIView& view, const Place& place) {
    for (const auto& child : view.subviews()) {
        if (child->isHidden() || child->alpha() == 0) continue;
        if (const auto* label = dynamic_cast<const UILabel*>(child.get())) checkLabel(*label, place);
        if (dynamic_cast<const platform::UIControl*>(child.get()))
            checkTarget(child->frame().width, child->frame().height, "a " + child->getClass().name(), place);
        if (auto* table = dynamic_cast<UITableView*>(child.get())) {
            checkTable(*table, place);
        } else {
            checkViews(*child, place);
        }
    }
}

void checkTable(UITableView& table, const Place& place) {
    for (std::int64_t section = 0; table.numberOfRowsInSection(section) > 0; ++section) {
        checkTarget(table.frame().width, table.rowHeight(), "a row", place);
        for (std::int64_t row = 0; row < table.numberOfRowsInSection(section); ++row) {
            const auto cell = table.cellForRowAtIndexPath({section, row});
            if (!cell) continue;
            cell->setFrame({0, 0, table.frame().width, table.rowHeight()});
            cell->layoutIfNeeded();
            checkLabels(*cell, place);
        }
    }
}

}  // namespace

std::string nameOfScreen(const platform::UIViewController& screen) {
    const std::string name = screen.getClass().name();
    const auto* detail = dynamic_cast<const platform::PSDetailController*>(&screen);
    const bool isFrameworks = &screen.getClass() == &platform::PSDetailController::staticClass();
    return detail && isFrameworks && detail->pane() ? name + "/" + detail->pane()->getClass().name() : name;
}

void checkCells(platform::PSListController& list, std::int64_t rows, Findings& findings,
                const std::string& language) {
    for (std::int64_t index = 0; index < rows; ++index) {
        const auto row = list.specifierAtIndex(index);
        if (!row) return;
        const auto cell = list.cellAtIndex(index);
        if (!cell) continue;
        const Place place{list.getClass().name(), nameOfRow(*row), findings, language};
        checkLabels(*cell, place);
        const auto path = list.indexPathForIndex(index);
        if (path && (cell->controlView() || list.rowCanBeSelected(*path)))
            checkTarget(cell->frame().width, cell->frame().height, "a row", place);
    }
}

void checkView(platform::UIViewController& screen, Findings& findings, const std::string& language) {
    screen.view()->layoutIfNeeded();
    checkViews(*screen.view(), {nameOfScreen(screen), "", findings, language});
}

}  // namespace settings
