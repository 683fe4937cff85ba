// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "profile/cells/QXEditableTableCell.h"
#include "tests/doubles/Phone.h"
#include "tests/doubles/Rows.h"

namespace quietrix {
namespace {

using doubles::makeCellOf;
using platform::PSSpecifier;

std::shared_ptr<PSSpecifier> titleRow() {
    return doubles::makeRowOfCellClass("Title", platform::PSCellType::EditText, "QXEditableTableCell");
}

TEST(QXEditableTableCell, beginOfEditing_givesTheDoneKeyWhateverTheFieldHad) {
    const doubles::Phone phone;
    const auto cell = makeCellOf<QXEditableTableCell>(titleRow());
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
    const auto row = titleRow();
    row->setTarget(keeper);
    row->setSetter(platform::method("keep:specifier:", &TitleKeeper::keep));
    row->setProperty_forKey("Work", "value");
    const auto cell = makeCellOf<QXEditableTableCell>(row);
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
    const auto cell = makeCellOf<QXEditableTableCell>(titleRow());
    const auto field = cell->textField();
    field->becomeFirstResponder();
    EXPECT_TRUE(field->pressReturn());
    EXPECT_FALSE(field->isFirstResponder());
}

}  // namespace
}  // namespace quietrix
