// SPDX-License-Identifier: MIT
// The table half of a list screen: its cells, and what the user's taps do. The row list is in
// PSListController.cpp.
#include <cmath>
#include <utility>

#include "platform/foundation/LogSink.h"
#include "platform/preferences/PSConfirmationController.h"
#include "platform/preferences/PSConfirmationSpecifier.h"
#include "platform/preferences/PSListController.h"
#include "platform/preferences/PSPlaceholderController.h"
#include "platform/uikit/UIDevice.h"
#include "platform/uikit/UINavigationController.h"

namespace platform {

namespace {

bool opensScreen(const PSSpecifier& specifier) {
    const PSCellType type = specifier.cellType();
    return (type == PSCellType::Link || type == PSCellType::LinkList) &&
           !specifier.detailControllerClass().empty();
}

bool sendsAction(const PSSpecifier& specifier) {
    return specifier.cellType() == PSCellType::Button && specifier.buttonAction() && specifier.target();
}

}  // namespace

const std::shared_ptr<UITableView>& PSListController::table() {
    if (!table_) {
        table_ = std::make_shared<UITableView>(UIScreen::mainScreen().bounds());
        table_->setCellLookup([owner = weak(this)](IndexPath path) -> std::shared_ptr<UITableViewCell> {
            const auto screen = owner.lock();
            const auto specifier = screen ? screen->specifierAtIndexPath(path) : nullptr;
            return specifier ? screen->livingCell(*specifier) : nullptr;
        });
    }
    return table_;
}

std::shared_ptr<PSSpecifier> PSListController::specifierAtIndexPath(IndexPath path) {
    return specifierAtIndex(indexForRow_inGroup(path.row, path.section));
}

std::shared_ptr<PSTableCell> PSListController::livingCell(const PSSpecifier& specifier) const {
    const auto cell = cells_.find(specifier.key());
    return cell == cells_.end() ? nullptr : cell->second;
}

std::shared_ptr<PSTableCell> PSListController::cellAtIndex(std::int64_t index) {
    const auto specifier = specifierAtIndex(index);
    if (!specifier) return nullptr;
    auto cell = livingCell(*specifier);
    if (cell) {
        cell->refreshCellContentsWithSpecifier(specifier);
    } else {
        cell = makeCellAtIndex(specifier, index);
        if (!cell) return nullptr;
        cells_.insert_or_assign(specifier->key(), cell);
    }
    const double width = UIScreen::mainScreen().bounds().width;
    const auto path = indexPathForIndex(index);
    const double height =
        path ? tableView_heightForRowAtIndexPath(table(), *path) : cell->preferredHeightForWidth(width);
    cell->setFrame({0, 0, width, height});
    cell->layoutIfNeeded();
    return cell;
}

std::shared_ptr<PSTableCell> PSListController::makeCellAtIndex(const std::shared_ptr<PSSpecifier>& specifier,
                                                               std::int64_t index) {
    if (const auto path = indexPathForIndex(index)) return tableView_cellForRowAtIndexPath(table(), *path);
    const Value header = specifier->propertyForKey("headerCellClass");
    return header.string() == nullptr ? nullptr : PSTableCell::makeCellOfClass(*header.string(), specifier);
}

std::shared_ptr<PSTableCell> PSListController::tableView_cellForRowAtIndexPath(
    const std::shared_ptr<UITableView>& /*table*/, IndexPath path) {
    const auto specifier = specifierAtIndexPath(path);
    if (!specifier) return nullptr;
    if (auto cell = livingCell(*specifier)) {
        cell->refreshCellContentsWithSpecifier(specifier);
        return cell;
    }
    auto cell = PSTableCell::makeCell(specifier);
    cells_.insert_or_assign(specifier->key(), cell);
    return cell;
}

void PSListController::tableView_didSelectRowAtIndexPath(const std::shared_ptr<UITableView>& /*table*/,
                                                         IndexPath path) {
    const auto specifier = specifierAtIndexPath(path);
    if (!specifier) return;
    if (std::dynamic_pointer_cast<PSConfirmationSpecifier>(specifier)) {
        askForConfirmation(specifier);
    } else if (opensScreen(*specifier)) {
        openScreenOfRow(specifier);
    } else if (sendsAction(*specifier)) {
        specifier->performButtonAction();
    }
}

void PSListController::openScreenOfRow(const std::shared_ptr<PSSpecifier>& specifier) {
    const auto navigation = navigationController();
    if (!navigation) {
        log(getClass().name() + ": no navigation controller to open " + specifier->detailControllerClass() +
            " on.");
        return;
    }
    const auto screen = makeViewController(specifier->detailControllerClass());
    screen->setSpecifier(specifier);
    openedRow_ = specifier;
    navigation->pushViewController_animated(screen, true);
}

void PSListController::askForConfirmation(const std::shared_ptr<PSSpecifier>& specifier) {
    const auto row = std::static_pointer_cast<PSConfirmationSpecifier>(specifier);
    const auto question = std::make_shared<PSConfirmationController>(row->title(), row->prompt(),
                                                                     UIAlertControllerStyleActionSheet);
    const bool destructive = row->propertyForKey("isDestructive").isTrue();
    // The row holds its target weakly, so the question keeps no screen alive.
    question->addAction({row->okButton(),
                         destructive ? UIAlertActionStyleDestructive : UIAlertActionStyleDefault,
                         [row] { row->performButtonAction(); }});
    question->addAction({row->cancelButton(), UIAlertActionStyleCancel, {}});
    presentViewController_animated_completion(question, true, {});
}

std::int64_t PSListController::tableView_editingStyleForRowAtIndexPath(
    const std::shared_ptr<UITableView>& /*table*/, IndexPath /*path*/) {
    return UITableViewCellEditingStyleNone;
}

void PSListController::tableView_commitEditingStyle_forRowAtIndexPath(
    const std::shared_ptr<UITableView>& /*table*/, std::int64_t /*style*/, IndexPath /*path*/) {}

double PSListController::tableView_heightForRowAtIndexPath(const std::shared_ptr<UITableView>& /*table*/,
                                                           IndexPath path) {
    const auto specifier = specifierAtIndexPath(path);
    if (!specifier) return 0;
    const auto height = specifier->propertyForKey("height").number();
    if (height && std::isfinite(*height) && *height > 0) return *height;
    return PSTableCell::heightForSpecifier(*specifier);
}

double PSListController::tableView_estimatedHeightForRowAtIndexPath(const std::shared_ptr<UITableView>& table,
                                                                    IndexPath path) {
    return tableView_heightForRowAtIndexPath(table, path);
}

bool PSListController::rowCanBeSelected(IndexPath path) {
    const auto specifier = specifierAtIndexPath(path);
    if (!specifier) return false;
    if (std::dynamic_pointer_cast<PSConfirmationSpecifier>(specifier)) return true;
    return opensScreen(*specifier) || sendsAction(*specifier);
}

}  // namespace platform
