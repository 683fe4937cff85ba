// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>

#include "platform/foundation/KeyValueCoding.h"
#include "platform/preferences/RowKeys.h"
#include "tests/doubles/ShownList.h"

namespace platform {
namespace {

using doubles::makeGroup;
using doubles::makeRow;
using Keys = std::vector<RowKey>;

/// A record of the thing with that identifier; two of them are two records of it.
class Record : public Object, public KeyValueCoding {
    PLATFORM_CLASS(Record, Object)

  public:
    Record() = default;
    explicit Record(std::string identifier) : identifier_(std::move(identifier)) {}
    Value valueForKey(std::string_view key) const override {
        return key == "identifier" ? Value(identifier_) : Value();
    }
    void setValue_forKey(const Value& /*value*/, std::string_view /*key*/) override {}

  private:
    std::string identifier_;
};

PLATFORM_REGISTER_CLASS(Record)

using Row = std::shared_ptr<PSSpecifier>;

Row with(Row row, std::optional<std::string> identifier, Value userInfo = {}) {
    row->setIdentifier(std::move(identifier));
    row->setUserInfo(std::move(userInfo));
    return row;
}

/// A row as a list of records has them: all with one identifier.
Row recordRow(const std::string& identifier, const std::string& name) {
    return with(makeRow(name, PSCellType::Link), "title", std::make_shared<Record>(identifier));
}

class RowKeysTest : public testing::Test {
  protected:
    Keys follow(const SpecifierList& rows) {
        keys_.follow(rows);
        Keys found;
        for (std::size_t index = 0; index < rows.size(); ++index) found.push_back(keys_.keyAt(index));
        EXPECT_EQ(found.size(), std::set<RowKey>(found.begin(), found.end()).size()) << "one key for two";
        for (std::size_t index = 0; index < rows.size(); ++index) {
            EXPECT_NE(0U, found[index]);
            EXPECT_EQ(index, keys_.indexOf(found[index]));
            if (!seen_.insert(found[index]).second) continue;
            EXPECT_GT(found[index], newest_) << "a key that was used before";
            newest_ = found[index];
        }
        return found;
    }

    RowKeys keys_;

  private:
    std::set<RowKey> seen_;
    RowKey newest_ = 0;
};

TEST_F(RowKeysTest, outOfRange_hasNoKeyAndNoRow) {
    EXPECT_EQ(0U, keys_.keyAt(0));
    const Keys keys = follow({makeRow("a")});
    EXPECT_EQ(0U, keys_.keyAt(1));
    EXPECT_EQ(std::nullopt, keys_.indexOf(keys[0] + 1000));
    EXPECT_EQ(std::nullopt, keys_.indexOf(0));
}

TEST_F(RowKeysTest, sameSpecifiers_keepTheirKeysWhereverTheyGo) {
    const Row a = makeRow("a"), b = makeRow("a"), c = makeRow("c"), d = makeRow("d");
    const Keys first = follow({a, b, c, d});
    EXPECT_EQ((Keys{first[3], first[1], first[0]}), follow({d, b, a}));
    const Keys more = follow({makeRow("a"), d, makeRow("x"), b, a});
    EXPECT_EQ((Keys{first[3], first[1], first[0]}), (Keys{more[1], more[3], more[4]}));
    EXPECT_FALSE(std::ranges::count(first, more[0])) << "the row that it is like is still there";
}

TEST_F(RowKeysTest, recordsOfOneThing_areOneRowWhateverItsNameSectionAndPlace) {
    const Keys first = follow({makeGroup("On"), recordRow("1", "Work"), recordRow("2", "Home"),
                               makeGroup("Off"), recordRow("3", "Cinema")});
    const Keys now = follow({makeGroup("On"), recordRow("3", "Cinema"), makeGroup("Off"),
                             recordRow("2", "At home"), recordRow("1", "Work"), recordRow("4", "Work")});
    EXPECT_EQ((Keys{first[0], first[4], first[3], first[2], first[1]}), Keys(now.begin(), now.end() - 1));
}

TEST_F(RowKeysTest, recordOfAnotherThing_isAnotherRowAlsoUnderTheSameName) {
    const Keys first = follow({recordRow("1", "Work")});
    const Keys second = follow({recordRow("2", "Work")});
    EXPECT_NE(first, second);
    EXPECT_NE(second, follow({recordRow("1", "Work")})) << "one that comes back is new";
}

TEST_F(RowKeysTest, recordsThatAreOfNothing_areThemselvesOnly) {
    const auto nothing = std::make_shared<Record>("");
    const auto row = [](std::shared_ptr<Object> object) {
        return with(makeRow("a"), "title", std::move(object));
    };
    const Keys first = follow({row(nothing)});
    EXPECT_EQ(first, follow({row(nothing)}));
    EXPECT_NE(first, follow({row(std::make_shared<Record>(""))}));
    const auto plain = std::make_shared<Object>();
    const Keys object = follow({row(plain)});
    EXPECT_EQ(object, follow({row(plain)}));
    EXPECT_NE(object, follow({row(std::make_shared<Object>())}));
}

TEST_F(RowKeysTest, kindAndIdentifier_areWhatARowIs) {
    const auto row = [](PSCellType kind, const char* identifier) {
        return with(makeRow("a", kind), identifier);
    };
    const Keys first = follow({row(PSCellType::Switch, "x"), row(PSCellType::Switch, "y")});
    const Keys kind = follow({row(PSCellType::Slider, "x"), row(PSCellType::Switch, "y")});
    EXPECT_NE(first[0], kind[0]);
    EXPECT_EQ(first[1], kind[1]);
    EXPECT_EQ((Keys{kind[1], kind[0]}), follow({row(PSCellType::Switch, "y"), row(PSCellType::Slider, "x")}));
}

TEST_F(RowKeysTest, containersOfUserInfo_areComparedByTheirEntriesAndNoDeeper) {
    const auto row = [](Value userInfo) { return with(makeRow("a"), std::nullopt, std::move(userInfo)); };
    const auto info = [](const char* record, Value list) {
        return Dictionary{{"profile", std::make_shared<Record>(record)}, {"list", std::move(list)}};
    };
    const Keys first = follow({row(info("1", Array{1, 2}))});
    EXPECT_EQ(first, follow({row(info("1", Array{1, 2, 3}))})) << "what it hands on is not what it is";
    EXPECT_NE(first, follow({row(info("2", Array{1, 2}))}));

    const Keys text = follow({row("text"), row(1), row(true), row(Array{"a", "b"}), row(Dictionary{})});
    EXPECT_EQ((Keys{text[4], text[3], text[2], text[1], text[0]}),
              follow({row(Dictionary{}), row(Array{"a", "b"}), row(true), row(1), row("text")}));
    const Keys others =
        follow({row("texts"), row(2), row(false), row(Array{"ab"}), row(Dictionary{{"a", 1}})});
    for (const RowKey key : others) EXPECT_FALSE(std::ranges::count(text, key));
}

TEST_F(RowKeysTest, rowsWithNothingElse_areKnownByTheirNames) {
    const Keys first = follow({makeGroup("A"), makeRow("a"), makeRow("b")});
    const Keys now = follow({makeGroup("A"), makeRow("b"), makeRow("c")});
    EXPECT_EQ(first[0], now[0]);
    EXPECT_EQ(first[2], now[1]);
    EXPECT_NE(first[1], now[2]) << "a press on one name must not meet another";
    EXPECT_NE(follow({makeRow("a")}), follow({makeRow("b")}));
}

TEST_F(RowKeysTest, severalOfOneKind_areToldByTheirNames) {
    const auto row = [](const char* name) { return with(makeRow(name), "shared"); };
    const Keys first = follow({row("a"), row("b")});
    const Keys now = follow({row("b"), row("c")});
    EXPECT_EQ(first[1], now[0]);
    EXPECT_NE(first[0], now[1]);
    const Keys one = follow({row("d")});
    EXPECT_FALSE(std::ranges::count(now, one[0])) << "there were two that it could have been";
    const Keys two = follow({row("e"), row("d")});
    EXPECT_EQ(one[0], two[1]) << "the other one is not it";
}

TEST_F(RowKeysTest, equalRows_areToldByTheirPlace) {
    const auto rows = [](int count) {
        SpecifierList list;
        while (count-- > 0) list.push_back(makeRow("No Profiles"));
        return list;
    };
    const Keys three = follow(rows(3));
    EXPECT_EQ(three, follow(rows(3)));
    EXPECT_EQ((Keys{three[0], three[1]}), follow(rows(2)));
    const Keys four = follow(rows(4));
    EXPECT_EQ((Keys{three[0], three[1]}), Keys(four.begin(), four.begin() + 2));
}

TEST_F(RowKeysTest, equalRowsOfTwoSections_stayWithTheirSections) {
    const auto none = [] { return makeRow("No Profiles"); };
    const Keys both = follow({makeGroup("On"), none(), makeGroup("Off"), none()});
    EXPECT_EQ(both, follow({makeGroup("On"), none(), makeGroup("Off"), none()}));
    const Keys one = follow({makeGroup("On"), recordRow("1", "Work"), makeGroup("Off"), none()});
    EXPECT_EQ((Keys{both[0], both[2], both[3]}), (Keys{one[0], one[2], one[3]}));
    const Keys swapped = follow({makeGroup("On"), none(), makeGroup("Off"), recordRow("1", "Work")});
    EXPECT_EQ((Keys{one[0], one[3], one[2], one[1]}), swapped) << "the only one of the kind that is left";
    const Keys turned = follow({makeGroup("Off"), none(), makeGroup("On"), none()});
    EXPECT_EQ((Keys{swapped[2], swapped[0], swapped[1]}), (Keys{turned[0], turned[2], turned[3]}));
}

TEST_F(RowKeysTest, holes_areNoRowsAndHarmNone) {
    const Keys first = follow({nullptr, recordRow("1", "a"), nullptr});
    const Keys now = follow({recordRow("2", "b"), nullptr, recordRow("1", "a")});
    EXPECT_EQ(first[1], now[2]);
}

/// Rebuilt in the opposite order: comparing them in pairs would take minutes.
TEST_F(RowKeysTest, longLists_areFollowed) {
    constexpr int count = 10'000;
    SpecifierList rows, again;
    for (int number = 0; number < count; ++number) {
        rows.push_back(recordRow(std::to_string(number), "same"));
        again.push_back(recordRow(std::to_string(count - 1 - number), "same"));
        rows.push_back(makeRow("No Profiles"));
        again.push_back(makeRow("No Profiles"));
    }
    keys_.follow(rows);
    const RowKey first = keys_.keyAt(0), last = keys_.keyAt(2 * count - 1);
    keys_.follow(again);
    EXPECT_EQ(first, keys_.keyAt(2 * count - 2));
    EXPECT_EQ(last, keys_.keyAt(2 * count - 1));
}

TEST_F(RowKeysTest, Traits_followedElsewhere_keepTheKeysOfTheSameRows) {
    const auto own = std::make_shared<Object>();
    const SpecifierList before{makeGroup(""), recordRow("one", "Work"), recordRow("two", "Night"),
                               makeRow("Plain", PSCellType::Link),
                               with(makeRow("Own", PSCellType::Link), "own", own)};
    const Keys keys = follow(before);
    const auto traits = keys_.traits();
    ASSERT_EQ(before.size(), traits.size());
    RowKeys elsewhere = RowKeys::ofTraits(traits);
    const SpecifierList after{makeGroup(""), recordRow("two", "Renamed"), makeRow("Plain", PSCellType::Link),
                              recordRow("three", "Work")};
    elsewhere.follow(after);
    EXPECT_EQ(keys[0], elsewhere.keyAt(0));
    EXPECT_EQ(keys[2], elsewhere.keyAt(1)) << "another name, the same record";
    EXPECT_EQ(keys[3], elsewhere.keyAt(2));
    EXPECT_GT(elsewhere.keyAt(3), lastRowKey() - 1) << "a new row has a new key";
}

TEST_F(RowKeysTest, NewRows_haveKeysAboveThoseOfElsewhere) {
    const RowKey high = lastRowKey() + 1000;
    rowKeysAbove(high);
    rowKeysAbove(1);
    EXPECT_EQ(high, lastRowKey());
    EXPECT_EQ(high + 1, follow({makeRow("New", PSCellType::Link)}).front());
}

}  // namespace
}  // namespace platform
