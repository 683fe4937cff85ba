// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <numeric>

#include "platform/foundation/PropertyList.h"
#include "settings/exploring/FileEdit.h"

namespace {

using platform::Array;
using platform::Data;
using platform::Dictionary;
using platform::PropertyListFormat;
using platform::PropertyListSerialization;
using platform::Value;
using settings::edited;
using settings::FileEdit;
using settings::FileEditKind;

Value tree() {
    return Dictionary{{"list", Array{1, Dictionary{{"name", "Tea"}}}}, {"on", true}};
}

Data bytes(PropertyListFormat format = PropertyListFormat::Binary) {
    return *PropertyListSerialization::dataWithPropertyList(tree(), format);
}

/// What the edits of that kind make of the tree, one for each seed.
std::vector<Value> made(FileEditKind kind) {
    std::vector<Value> trees;
    for (std::uint64_t seed = 0; seed < 20; ++seed) {
        const auto data = edited(bytes(), {kind, seed});
        const auto list = PropertyListSerialization::propertyListWithData(data.value_or(Data()));
        trees.push_back(list ? *list : Value());
    }
    return trees;
}

TEST(FileEdit, wholeFiles_areRemovedEmptiedCutAndFlipped) {
    const Data before = bytes();
    EXPECT_EQ(edited(before, {FileEditKind::Remove, 1}), std::nullopt);
    EXPECT_EQ(edited(before, {FileEditKind::Empty, 1}), Data());
    const Data cut = *edited(before, {FileEditKind::CutShort, 5});
    EXPECT_LT(cut.size(), before.size());
    EXPECT_TRUE(std::equal(cut.begin(), cut.end(), before.begin()));
    const Data flipped = *edited(before, {FileEditKind::FlipBit, 5});
    ASSERT_EQ(flipped.size(), before.size());
    EXPECT_EQ(std::inner_product(before.begin(), before.end(), flipped.begin(), 0, std::plus<>(),
                                 [](auto a, auto b) { return a == b ? 0 : 1; }),
              1);
    EXPECT_FALSE(PropertyListSerialization::propertyListWithData(*edited(before, {FileEditKind::Junk, 1})));
    EXPECT_FALSE(
        PropertyListSerialization::propertyListWithData(*edited(before, {FileEditKind::NoDictionary, 1}))
            ->dictionary());
}

TEST(FileEdit, lists_areChangedWithin) {
    for (const Value& each : made(FileEditKind::ForgetKey)) {
        const bool isOuter = each.dictionary()->size() == 1;
        EXPECT_TRUE(isOuter || each["list"] == Value(Array{1, Dictionary()})) << each.description();
    }
    for (const Value& each : made(FileEditKind::OtherKind)) EXPECT_NE(each, tree());
    for (const Value& each : made(FileEditKind::Repeat)) {
        const std::size_t count = each["list"].array()->size();
        EXPECT_TRUE(count == 0 || count == 3) << each.description();
    }
}

TEST(FileEdit, otherFormat_holdsTheSame) {
    const Data xml = *edited(bytes(), {FileEditKind::OtherFormat, 0});
    EXPECT_EQ(*PropertyListSerialization::formatOfData(xml), PropertyListFormat::XML);
    EXPECT_EQ(*PropertyListSerialization::propertyListWithData(xml), tree());
}

TEST(FileEdit, whatCannotBeDone_leavesTheBytes) {
    const Data junk{1, 2, 3};
    EXPECT_EQ(edited(junk, {FileEditKind::ForgetKey, 1}), junk);
    EXPECT_EQ(edited(std::nullopt, {FileEditKind::CutShort, 1}), std::nullopt);
    EXPECT_EQ(edited(Data(), {FileEditKind::FlipBit, 1}), Data());
}

TEST(FileEdit, sameSeed_makesTheSame) {
    for (std::size_t kind = 0; kind < settings::fileEditKinds; ++kind) {
        const FileEdit edit{static_cast<FileEditKind>(kind), 11};
        EXPECT_EQ(edited(bytes(), edit), edited(bytes(), edit));
        EXPECT_FALSE(nameOf(edit.kind).empty());
    }
}

}  // namespace
