// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/preferences/PSTableCell.h"
#include "platform/preferences/PSViewController.h"
#include "platform/preferences/RowKeys.h"
#include "platform/uikit/UITableView.h"

namespace platform {

/// A screen made of an ordered list of rows. Group rows begin sections; rows ahead of the first group form a
/// section of their own. A subclass overrides `specifiers` to build the rows once into `specifiers_`.
/// Row methods of the table may be overridden. Cells are made only for rows that someone looks at, and live
/// until their row is reloaded or removed. A subclass that changes the row list behind the screen's back,
/// without another list or another count, calls reloadSpecifiers.
class PSListController : public PSViewController {
    PLATFORM_CLASS(PSListController, PSViewController)

  public:
    ~PSListController() override;

    /// The row list, built when it is empty. The base gives an empty list. Never null.
    virtual SpecifierArray specifiers();
    /// Drops the rows and their cells and the table's selection, and builds the rows anew; journals "reload".
    virtual void reloadSpecifiers();
    /// Drops the row's cell, so that it is made anew at the next look.
    void reloadSpecifier(const std::shared_ptr<PSSpecifier>& specifier);

    /// Row list access. An index that is out of range gives null.
    std::shared_ptr<PSSpecifier> specifierAtIndex(std::int64_t index);
    /// -1 when the row is not in the list.
    std::int64_t indexOfSpecifier(const std::shared_ptr<PSSpecifier>& specifier);
    /// The list index of a row of a section; -1 when there is none.
    std::int64_t indexForRow_inGroup(std::int64_t row, std::int64_t group);
    /// The row at that index; null when there is none.
    std::shared_ptr<PSSpecifier> specifierAtIndexPath(IndexPath path);
    /// The section and row of a list index; a group row, or an index out of range, gives nothing.
    std::optional<IndexPath> indexPathForIndex(std::int64_t index);
    /// The section that the list index belongs to, group rows included; -1 out of range.
    std::int64_t sectionForIndex(std::int64_t index);
    /// The rows' keys as they are now.
    RowKeys rowKeys() { return keys(); }
    /// Has the rows that are still the same ones keep the keys that they had on another screen: for one that
    /// takes its place. Before anybody has asked this one for a key.
    void takeOverRowKeys(RowKeys keys);
    /// The row's key, by which it can be named whatever becomes of the list: see RowKeys. 0 out of range.
    RowKey keyAtIndex(std::int64_t index);
    /// The list index of the row that has the key now; -1 when no row has it (any more).
    std::int64_t indexOfKey(RowKey key);
    std::int64_t numberOfSections();
    std::int64_t numberOfRowsInSection(std::int64_t section);

    /// An index out of range (-1 included) clamps to the nearest end and is logged. Journals "insert" with
    /// the index that it took. Null is logged and ignored.
    void insertSpecifier_atIndex_animated(const std::shared_ptr<PSSpecifier>& specifier, std::int64_t index,
                                          bool animated);
    /// An index out of range does nothing and is logged. Journals "remove".
    void removeSpecifierAtIndex_animated(std::int64_t index, bool animated);

    const std::shared_ptr<UITableView>& table();
    /// The row's cell: what the table shows. The first look makes it, each look refreshes and lays it out at
    /// the main screen's width. Null out of range and for group rows without a header cell
    /// ("headerCellClass").
    std::shared_ptr<PSTableCell> cellAtIndex(std::int64_t index);

    /// Makes the cell of a row, or gives the living one. Overrides call the base first and dress what it
    /// gives. Null when there is no such row.
    virtual std::shared_ptr<PSTableCell> tableView_cellForRowAtIndexPath(
        const std::shared_ptr<UITableView>& table, IndexPath path);
    /// Opens a link row's screen (with the row as its specifier, and the row's name as title), asks for a
    /// confirmation row, sends a button row's action; anything else, a link row without a screen too, does
    /// nothing.
    virtual void tableView_didSelectRowAtIndexPath(const std::shared_ptr<UITableView>& table, IndexPath path);
    virtual std::int64_t tableView_editingStyleForRowAtIndexPath(const std::shared_ptr<UITableView>& table,
                                                                 IndexPath path);
    virtual void tableView_commitEditingStyle_forRowAtIndexPath(const std::shared_ptr<UITableView>& table,
                                                                std::int64_t style, IndexPath path);
    /// The row's "height", else its cell class's default.
    virtual double tableView_heightForRowAtIndexPath(const std::shared_ptr<UITableView>& table,
                                                     IndexPath path);
    virtual double tableView_estimatedHeightForRowAtIndexPath(const std::shared_ptr<UITableView>& table,
                                                              IndexPath path);
    /// Whether the user's tap on the row does anything: what the application offers as tappable.
    virtual bool rowCanBeSelected(IndexPath path);

    void loadView() override;
    /// Builds the rows.
    void viewDidLoad() override;
    /// Drops the cell of the row whose screen was opened last: what was chosen there shows when it is left.
    void viewWillAppear(bool animated) override;

  protected:
    /// The row list as everything here uses it: whatever an override of `specifiers` gives for it. A base of
    /// many screens that keeps a row of its own among theirs overrides this and puts it there. Never null.
    virtual SpecifierArray rows();
    /// The framework's row list; null until built. Overrides of `specifiers` fill it.
    SpecifierArray specifiers_;

  private:
    /// Where a section stands in the row list.
    struct Section {
        /// List index of the section's group row; -1 for the rows ahead of the first group.
        std::int64_t groupIndex = -1;
        std::int64_t firstRowIndex = 0;
        std::int64_t rowCount = 0;

        std::int64_t begin() const { return groupIndex < 0 ? firstRowIndex : groupIndex; }
        std::int64_t end() const { return firstRowIndex + rowCount; }
    };
    /// Which row list something was worked out from.
    class Seen {
      public:
        bool is(const SpecifierArray& list) const {
            return valid_ && list_.lock() == list && count_ == list->size();
        }
        void take(const SpecifierArray& list);
        void forget() { valid_ = false; }

      private:
        bool valid_ = false;
        /// Weak rather than plain: a new list cannot take the address of one that is still watched, so
        /// another list is never taken for it.
        std::weak_ptr<SpecifierList> list_;
        std::size_t count_ = 0;
    };
    /// Built at the first question after a change; in the order of their list indexes.
    const std::vector<Section>& sections();
    const Section* sectionOfIndex(std::int64_t index);
    /// Follow the rows at the first question after a change.
    const RowKeys& keys();
    void rowsChanged();
    std::shared_ptr<PSTableCell> livingCell(const PSSpecifier& specifier) const;
    std::shared_ptr<PSTableCell> makeCellAtIndex(const std::shared_ptr<PSSpecifier>& specifier,
                                                 std::int64_t index);
    void openScreenOfRow(const std::shared_ptr<PSSpecifier>& specifier);
    void askForConfirmation(const std::shared_ptr<PSSpecifier>& specifier);

    std::shared_ptr<UITableView> table_;
    std::vector<Section> sectionCache_;
    Seen sectioned_;
    RowKeys keys_;
    Seen keyed_;
    /// By the specifiers' keys, so that inserting and removing rows moves no cell.
    std::unordered_map<std::uint64_t, std::shared_ptr<PSTableCell>> cells_;
    /// Null when no row's screen has been opened since this one appeared.
    std::weak_ptr<PSSpecifier> openedRow_;
};

}  // namespace platform
