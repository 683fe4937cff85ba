// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "profile/cells/QXEditableTableCell.h"
#include "tests/doubles/Phone.h"

namespace quietrix {
namespace {

using platform::PSSpecifier;
using platform::PSTableCell;

std::shared_ptr<QXEditableTableCell> makeCell() {
    const auto row = PSSpecifier::preferenceSpecifierNamed_target_set_get_detail_cell_edit(
        "Title", nullptr, {}, {}, "", platform::PSCellType::EditText, "");
    row->setProperty_forKey("QXEditableTableCell", "cellClass");
    return std::dynamic_pointer_cast<QXEditableTableCell>(PSTableCell::makeCell(row));
}

TEST(QXEditableTableCell, beginOfEditing_givesTheDoneKeyWhateverTheFieldHad) {
    const doubles::Phone phone;
    const auto cell = makeCell();
    ASSERT_NE(nullptr, cell);
    const auto field = cell->textField();
    for (const std::int64_t other : {platform::UIReturnKeyDefault, std::int64_t{4}}) {
        field->setReturnKeyType(other);
        field->becomeFirstResponder();
        EXPECT_EQ(platform::UIReturnKeyDone, field->returnKeyType());
        field->resignFirstResponder();
    }
}

/// Counts what its row stores.
class TitleKeeper : public platform::Object {
  public:
    void keep(const platform::Value&, const std::shared_ptr<PSSpecifier>&) { ++kept; }
    int kept = 0;
};

TEST(QXEditableTableCell, editingThatChangesNothing_storesNothing) {
    const doubles::Phone phone;
    const auto keeper = std::make_shared<TitleKeeper>();
    const auto row = PSSpecifier::preferenceSpecifierNamed_target_set_get_detail_cell_edit(
        "Title", keeper, platform::method("keep:specifier:", &TitleKeeper::keep), {}, "",
        platform::PSCellType::EditText, "");
    row->setProperty_forKey("QXEditableTableCell", "cellClass");
    row->setProperty_forKey("Work", "value");
    const auto cell = std::dynamic_pointer_cast<QXEditableTableCell>(PSTableCell::makeCell(row));
    ASSERT_NE(nullptr, cell);
    const auto field = cell->textField();
    ASSERT_EQ("Work", field->text());
    field->becomeFirstResponder();
    field->pressReturn();
    EXPECT_EQ(0, keeper->kept) << "the text at the begin of the editing is known";
    field->becomeFirstResponder();
    field->setText("Office");
    field->pressReturn();
    EXPECT_EQ(1, keeper->kept);
}

TEST(QXEditableTableCell, return_closesTheKeyboardAndAnswersYes) {
    const doubles::Phone phone;
    const auto cell = makeCell();
    ASSERT_NE(nullptr, cell);
    const auto field = cell->textField();
    field->becomeFirstResponder();
    EXPECT_TRUE(field->pressReturn());
    EXPECT_FALSE(field->isFirstResponder());
}

}  // namespace
}  // namespace quietrix
