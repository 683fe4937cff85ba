// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "platform/preferences/PSListController.h"
#include "tests/doubles/Required.h"
#include "tests/doubles/ShownList.h"

namespace platform {
namespace {

using doubles::makeGroup;
using doubles::makeRow;
using doubles::required;
using Names = std::vector<std::string>;

class ListRows : public testing::Test, public doubles::ShownList {
  protected:
    /// The kinds, indexes and names of the row events since the last call.
    Names takeRowEvents() {
        Names lines;
        for (const auto& event : phone.takeEvents()) {
            const std::string kind = event.at("event").stringOr();
            if (kind == "reload") lines.push_back(kind);
            if (kind != "insert" && kind != "remove") continue;
            lines.push_back(kind + " " + event.at("index").description() + " " +
                            event.at("name").description() +
                            (event.at("animated").isTrue() ? " animated" : ""));
        }
        return lines;
    }
};

TEST(PSListController, baseList_isEmptyAndNeverNull) {
    const auto list = std::make_shared<PSListController>();
    ASSERT_NE(nullptr, list->specifiers());
    EXPECT_EQ(list->specifiers(), list->specifiers());
    EXPECT_EQ(0, list->numberOfSections());
    EXPECT_EQ(0, list->numberOfRowsInSection(0));
    EXPECT_EQ(-1, list->indexForRow_inGroup(0, 0));
    EXPECT_EQ(-1, list->sectionForIndex(0));
    EXPECT_EQ(nullptr, list->specifierAtIndex(0));
    EXPECT_EQ(nullptr, list->cellAtIndex(0));
}

TEST(PSListController, overrideThatGivesNoList_worksOnAnEmptyOne) {
    class NoList : public PSListController {
      public:
        SpecifierArray specifiers() override { return specifiers_; }
    };
    doubles::Phone phone;
    const auto list = std::make_shared<NoList>();
    EXPECT_EQ(0, list->numberOfSections());
    list->insertSpecifier_atIndex_animated(makeRow("a"), 0, false);
    EXPECT_EQ(0, list->indexForRow_inGroup(0, 0));
}

TEST_F(ListRows, viewDidLoad_buildsTheRowsOnce) {
    show({makeRow("a")});
    EXPECT_EQ(1, list->builds);
    list->view();
    list->cellAtIndex(0);
    EXPECT_EQ(1, list->builds);
}

TEST_F(ListRows, keys_followTheRowsThroughEveryChange) {
    const auto built = [] {
        return SpecifierList{makeGroup("A"), makeRow("a0"), makeRow("a1"), makeGroup("B"), makeRow("b0")};
    };
    show(built());
    std::vector<RowKey> keys;
    for (std::int64_t index = 0; index < 5; ++index) keys.push_back(list->keyAtIndex(index));
    EXPECT_EQ(0U, list->keyAtIndex(-1));
    EXPECT_EQ(0U, list->keyAtIndex(5));
    const auto indexes = [&] {
        std::vector<std::int64_t> found;
        for (const RowKey key : keys) found.push_back(list->indexOfKey(key));
        return found;
    };
    list->given = built();
    list->reloadSpecifiers();
    EXPECT_EQ((std::vector<std::int64_t>{0, 1, 2, 3, 4}), indexes());
    list->removeSpecifierAtIndex_animated(1, false);
    list->insertSpecifier_atIndex_animated(makeRow("new"), 0, false);
    EXPECT_EQ((std::vector<std::int64_t>{1, -1, 2, 3, 4}), indexes());
    list->replaceRows({makeGroup("B"), makeRow("b0"), makeGroup("A"), makeRow("a1"), makeRow("a0")});
    EXPECT_EQ((std::vector<std::int64_t>{2, -1, 3, 0, 1}), indexes());
    EXPECT_EQ(-1, list->indexOfKey(0));
}

TEST_F(ListRows, groups_beginSections) {
    show({makeGroup("A"), makeRow("a0"), makeRow("a1"), makeGroup("B"), makeGroup("C"), makeRow("c0")});
    EXPECT_EQ(3, list->numberOfSections());
    EXPECT_EQ(2, list->numberOfRowsInSection(0));
    EXPECT_EQ(0, list->numberOfRowsInSection(1));
    EXPECT_EQ(1, list->numberOfRowsInSection(2));
    EXPECT_EQ(2, list->indexForRow_inGroup(1, 0));
    EXPECT_EQ(5, list->indexForRow_inGroup(0, 2));
    EXPECT_EQ((IndexPath{2, 0}), list->indexPathForIndex(5));
    EXPECT_FALSE(list->indexPathForIndex(3).has_value()) << "a group row has no path";
    EXPECT_EQ(1, list->sectionForIndex(3));
    EXPECT_EQ(2, list->sectionForIndex(4));
    EXPECT_EQ(0, list->sectionForIndex(0));
}

TEST_F(ListRows, everyRow_hasThePathThatLeadsBackToIt) {
    show({makeRow("lead"), makeGroup("A"), makeRow("a"), makeGroup("B"), makeRow("b0"), makeRow("b1")});
    for (std::int64_t index = 0; index < std::ssize(*list->specifiers()); ++index) {
        const auto path = list->indexPathForIndex(index);
        EXPECT_EQ(required(list->specifierAtIndex(index))->isGroup(), !path.has_value());
        if (!path) continue;
        EXPECT_EQ(index, list->indexForRow_inGroup(path->row, path->section));
        EXPECT_EQ(path->section, list->sectionForIndex(index));
    }
}

TEST_F(ListRows, rowsAheadOfTheFirstGroup_areASectionOfTheirOwn) {
    show({makeRow("x"), makeRow("y"), makeGroup("A"), makeRow("a")});
    EXPECT_EQ(2, list->numberOfSections());
    EXPECT_EQ(1, list->indexForRow_inGroup(1, 0));
    EXPECT_EQ(3, list->indexForRow_inGroup(0, 1));
    EXPECT_EQ((IndexPath{0, 0}), list->indexPathForIndex(0));
}

TEST_F(ListRows, listWithoutAnyGroup_isOneSection) {
    show({makeRow("x"), makeRow("y")});
    EXPECT_EQ(1, list->numberOfSections());
    EXPECT_EQ((IndexPath{0, 1}), list->indexPathForIndex(1));
}

TEST_F(ListRows, questionsOutOfRange_haveNoAnswer) {
    show({makeGroup("A"), makeRow("a")});
    for (const std::int64_t index : {-1, 2, 1000}) {
        EXPECT_EQ(nullptr, list->specifierAtIndex(index));
        EXPECT_FALSE(list->indexPathForIndex(index).has_value());
        EXPECT_EQ(-1, list->sectionForIndex(index));
        EXPECT_EQ(-1, list->indexForRow_inGroup(index, 0));
        EXPECT_EQ(-1, list->indexForRow_inGroup(0, index));
        EXPECT_EQ(0, list->numberOfRowsInSection(index));
        EXPECT_EQ(nullptr, list->cellAtIndex(index));
    }
    EXPECT_EQ(-1, list->indexOfSpecifier(makeRow("a")));
    EXPECT_EQ(-1, list->indexOfSpecifier(nullptr));
    EXPECT_EQ(1, list->indexOfSpecifier(list->specifierAtIndex(1)));
}

TEST_F(ListRows, insertedAndRemovedRows_moveTheSections) {
    show({makeGroup("A"), makeRow("a"), makeGroup("Z"), makeRow("z")});
    list->insertSpecifier_atIndex_animated(makeGroup("B"), 2, true);
    EXPECT_EQ(3, list->numberOfSections());
    list->insertSpecifier_atIndex_animated(makeRow("b"), 3, true);
    EXPECT_EQ((IndexPath{1, 0}), list->indexPathForIndex(3));
    EXPECT_EQ((Names{"A", "a", "B", "b", "Z", "z"}), list->names());
    list->removeSpecifierAtIndex_animated(2, false);
    EXPECT_EQ(2, list->numberOfSections());
    EXPECT_EQ((IndexPath{0, 1}), list->indexPathForIndex(2));
    EXPECT_EQ((Names{"insert 2 B animated", "insert 3 b animated", "remove 2 B"}), takeRowEvents());
}

TEST_F(ListRows, namelessRow_isJournaledWithoutAName) {
    show({makeRow("a")});
    list->insertSpecifier_atIndex_animated(PSSpecifier::emptyGroupSpecifier(), 1, false);
    const auto events = phone.takeEvents("insert");
    ASSERT_EQ(1U, events.size());
    EXPECT_TRUE(events[0].at("name").isNil());
    EXPECT_EQ(Value(false), events[0].at("animated"));
    EXPECT_EQ(Value(1), events[0].at("index"));
}

TEST_F(ListRows, insertionOutOfRange_goesToTheNearestEndAndIsLogged) {
    show({makeRow("a"), makeRow("b")});
    list->insertSpecifier_atIndex_animated(makeRow("first"), -1, true);
    list->insertSpecifier_atIndex_animated(makeRow("last"), 50, false);
    EXPECT_EQ((Names{"first", "a", "b", "last"}), list->names());
    EXPECT_EQ((Names{"insert 0 first animated", "insert 3 last"}), takeRowEvents());
    EXPECT_EQ(2U, phone.log->lines().size());
    list->insertSpecifier_atIndex_animated(nullptr, 0, true);
    EXPECT_EQ(4U, list->names().size());
    EXPECT_EQ(3U, phone.log->lines().size());
}

TEST_F(ListRows, removalOutOfRange_doesNothingAndIsLogged) {
    show({makeRow("a")});
    list->removeSpecifierAtIndex_animated(-1, true);
    list->removeSpecifierAtIndex_animated(1, true);
    EXPECT_EQ(Names{"a"}, list->names());
    EXPECT_TRUE(takeRowEvents().empty());
    EXPECT_EQ(2U, phone.log->lines().size());
}

TEST_F(ListRows, insertionAtTheVeryEnd_isInRange) {
    show({makeRow("a")});
    list->insertSpecifier_atIndex_animated(makeRow("b"), 1, true);
    EXPECT_EQ((Names{"a", "b"}), list->names());
    EXPECT_TRUE(phone.log->lines().empty());
}

TEST_F(ListRows, reload_buildsAnewAndIsJournaled) {
    show({makeRow("a")});
    list->given = {makeGroup("B"), makeRow("b")};
    list->reloadSpecifiers();
    EXPECT_EQ((Names{"B", "b"}), list->names());
    EXPECT_EQ((IndexPath{0, 0}), list->indexPathForIndex(1));
    EXPECT_EQ(Names{"reload"}, takeRowEvents());
    EXPECT_EQ(2, list->builds);
}

TEST_F(ListRows, listThatASubclassReplaced_isNoticedAtTheNextQuestion) {
    show({makeGroup("A"), makeRow("a")});
    EXPECT_EQ(1, list->numberOfSections());
    list->replaceRows({makeRow("x"), makeGroup("B")});
    EXPECT_EQ(2, list->numberOfSections()) << "another list of the same length";
    EXPECT_EQ((IndexPath{0, 0}), list->indexPathForIndex(0));
    list->specifiers()->push_back(makeGroup("C"));
    EXPECT_EQ(3, list->numberOfSections()) << "the same list of another length";
}

TEST_F(ListRows, replacedLists_areNeverMistakenForOneAnother) {
    show({makeRow("a")});
    // Each round frees the list before, whose memory the next one may take.
    for (int round = 0; round < 50; ++round) {
        const bool grouped = round % 2 == 0;
        list->replaceRows({grouped ? makeGroup("g") : makeRow("r")});
        EXPECT_EQ(grouped ? 0 : 1, list->numberOfRowsInSection(0)) << round;
    }
}

TEST_F(ListRows, manyRowsInsertedAndRemovedOneByOne_leaveTheListAsItWas) {
    show({makeGroup("A"), makeRow("switch"), makeGroup("About"), makeRow("misc")});
    const auto before = list->names();
    for (int i = 0; i < 2000; ++i)
        list->insertSpecifier_atIndex_animated(makeRow("p" + std::to_string(i)), 2 + i, true);
    EXPECT_EQ(2001, list->numberOfRowsInSection(0));
    EXPECT_EQ((IndexPath{1, 0}), list->indexPathForIndex(2003));
    for (std::int64_t i = 2001; i > 1; --i) list->removeSpecifierAtIndex_animated(i, true);
    EXPECT_EQ(before, list->names());
    EXPECT_EQ(1, list->numberOfRowsInSection(0));
}

}  // namespace
}  // namespace platform
