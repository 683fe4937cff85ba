// SPDX-License-Identifier: MIT
#include "platform/preferences/PSListController.h"

#include <algorithm>
#include <utility>

#include "platform/foundation/Journal.h"
#include "platform/foundation/LogSink.h"

namespace platform {

PLATFORM_REGISTER_CLASS(PSListController)

namespace {

Value journalName(const PSSpecifier& specifier) {
    return specifier.name() ? Value(*specifier.name()) : Value();
}

}  // namespace

PSListController::~PSListController() = default;

SpecifierArray PSListController::specifiers() {
    if (!specifiers_) specifiers_ = std::make_shared<SpecifierList>();
    return specifiers_;
}

SpecifierArray PSListController::rows() {
    if (auto list = specifiers()) return list;
    specifiers_ = std::make_shared<SpecifierList>();
    return specifiers_;
}

void PSListController::reloadSpecifiers() {
    const Journal::Course course("reload");
    cells_.clear();
    if (table_ && table_->indexPathForSelectedRow()) {
        table_->deselectRowAtIndexPath_animated(*table_->indexPathForSelectedRow(), false);
    }
    specifiers_.reset();
    rowsChanged();
    rows();
}

void PSListController::reloadSpecifier(const std::shared_ptr<PSSpecifier>& specifier) {
    if (specifier) cells_.erase(specifier->key());
}

std::shared_ptr<PSSpecifier> PSListController::specifierAtIndex(std::int64_t index) {
    const auto list = rows();
    if (index < 0 || index >= std::ssize(*list)) return nullptr;
    return (*list)[static_cast<std::size_t>(index)];
}

std::int64_t PSListController::indexOfSpecifier(const std::shared_ptr<PSSpecifier>& specifier) {
    const auto list = rows();
    const auto place = std::ranges::find(*list, specifier);
    return place == list->end() ? -1 : place - list->begin();
}

void PSListController::Seen::take(const SpecifierArray& list) {
    valid_ = true;
    list_ = list;
    count_ = list->size();
}

void PSListController::rowsChanged() {
    sectioned_.forget();
    keyed_.forget();
}

const RowKeys& PSListController::keys() {
    const auto list = rows();
    if (!keyed_.is(list)) {
        keys_.follow(*list);
        keyed_.take(list);
    }
    return keys_;
}

void PSListController::takeOverRowKeys(RowKeys keys) {
    keys_ = std::move(keys);
    keyed_.forget();
}

RowKey PSListController::keyAtIndex(std::int64_t index) {
    return index < 0 ? 0 : keys().keyAt(static_cast<std::size_t>(index));
}

std::int64_t PSListController::indexOfKey(RowKey key) {
    const auto index = keys().indexOf(key);
    return index ? static_cast<std::int64_t>(*index) : -1;
}

const std::vector<PSListController::Section>& PSListController::sections() {
    const auto list = rows();
    if (sectioned_.is(list)) return sectionCache_;
    sectionCache_.clear();
    const std::int64_t count = std::ssize(*list);
    for (std::int64_t index = 0; index < count; ++index) {
        const auto& row = (*list)[static_cast<std::size_t>(index)];
        if (row && row->isGroup()) {
            sectionCache_.push_back({index, index + 1, 0});
        } else {
            if (sectionCache_.empty()) sectionCache_.push_back({-1, index, 0});
            ++sectionCache_.back().rowCount;
        }
    }
    sectioned_.take(list);
    return sectionCache_;
}

const PSListController::Section* PSListController::sectionOfIndex(std::int64_t index) {
    const auto& all = sections();
    if (index < 0 || all.empty() || index >= all.back().end()) return nullptr;
    return &*std::prev(std::ranges::upper_bound(all, index, {}, &Section::begin));
}

std::int64_t PSListController::indexForRow_inGroup(std::int64_t row, std::int64_t group) {
    if (row < 0 || row >= numberOfRowsInSection(group)) return -1;
    return sections()[static_cast<std::size_t>(group)].firstRowIndex + row;
}

std::optional<IndexPath> PSListController::indexPathForIndex(std::int64_t index) {
    const Section* section = sectionOfIndex(index);
    if (section == nullptr || index < section->firstRowIndex) return std::nullopt;
    return IndexPath{section - sectionCache_.data(), index - section->firstRowIndex};
}

std::int64_t PSListController::sectionForIndex(std::int64_t index) {
    const Section* section = sectionOfIndex(index);
    return section == nullptr ? -1 : section - sectionCache_.data();
}

std::int64_t PSListController::numberOfSections() {
    return std::ssize(sections());
}

std::int64_t PSListController::numberOfRowsInSection(std::int64_t section) {
    const auto& all = sections();
    if (section < 0 || section >= std::ssize(all)) return 0;
    return all[static_cast<std::size_t>(section)].rowCount;
}

void PSListController::insertSpecifier_atIndex_animated(const std::shared_ptr<PSSpecifier>& specifier,
                                                        std::int64_t index, bool animated) {
    if (!specifier) {
        log(getClass().name() + ": there is no row to insert at " + std::to_string(index) + ".");
        return;
    }
    const auto list = rows();
    const std::int64_t place = std::clamp<std::int64_t>(index, 0, std::ssize(*list));
    if (place != index) {
        log(getClass().name() + ": there is no index " + std::to_string(index) + " among " +
            std::to_string(list->size()) + " rows; the row \"" + specifier->name().value_or("") +
            "\" goes to " + std::to_string(place) + ".");
    }
    Journal::shared().record("insert",
                             {{"index", place}, {"name", journalName(*specifier)}, {"animated", animated}});
    list->insert(list->begin() + place, specifier);
    rowsChanged();
}

void PSListController::removeSpecifierAtIndex_animated(std::int64_t index, bool animated) {
    const auto list = rows();
    if (index < 0 || index >= std::ssize(*list)) {
        log(getClass().name() + ": there is no row " + std::to_string(index) + " to remove among " +
            std::to_string(list->size()) + ".");
        return;
    }
    const auto removed = (*list)[static_cast<std::size_t>(index)];
    Journal::shared().record("remove",
                             {{"index", index}, {"name", journalName(*removed)}, {"animated", animated}});
    list->erase(list->begin() + index);
    cells_.erase(removed->key());
    rowsChanged();
}

void PSListController::loadView() {
    PSViewController::loadView();
    view()->addSubview(table());
}

void PSListController::viewDidLoad() {
    PSViewController::viewDidLoad();
    rows();
}

void PSListController::viewWillAppear(bool animated) {
    PSViewController::viewWillAppear(animated);
    reloadSpecifier(openedRow_.lock());
    openedRow_.reset();
}

}  // namespace platform
