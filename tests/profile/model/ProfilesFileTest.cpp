// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <random>

#include "platform/foundation/PropertyList.h"
#include "profile/model/ProfilesFileChanges.h"
#include "profile/model/QXProfile.h"

namespace {

using platform::Array;
using platform::Data;
using platform::Dictionary;
using platform::PropertyListFormat;
using platform::PropertyListSerialization;
using platform::Value;
using quietrix::ProfilesFile;
using quietrix::QXProfile;

Dictionary profile(const std::string& identifier, const std::string& title) {
    QXProfile record;
    record.setIdentifier(identifier);
    record.setTitle(title);
    return record.storedValues();
}

Value contents(const ProfilesFile& file) {
    return PropertyListSerialization::propertyListWithData(file.bytes()).value_or(Value());
}

Value expected(const std::vector<Dictionary>& profiles) {
    return Dictionary{{"format", 1}, {"profiles", Array(profiles.begin(), profiles.end())}};
}

ProfilesFile adding(const ProfilesFile& file, const Dictionary& values) {
    ProfilesFile::Changes changes(file);
    changes.add(values);
    return changes.finish().value();
}

ProfilesFile updating(const ProfilesFile& file, const Dictionary& values) {
    ProfilesFile::Changes changes(file);
    changes.update(values.at("identifier").stringOr(), values);
    return changes.finish().value();
}

ProfilesFile removing(const ProfilesFile& file, std::string_view identifier) {
    ProfilesFile::Changes changes(file);
    changes.remove(identifier);
    return changes.finish().value();
}

TEST(ProfilesFile, fileThatIsNotThere_hasNoProfiles) {
    const ProfilesFile file;
    EXPECT_TRUE(file.profiles().empty());
    EXPECT_EQ(std::nullopt, file.find("A"));
    EXPECT_TRUE(file.bytes().empty());
}

TEST(ProfilesFile, changes_leaveTheStateTheyStartFrom) {
    const ProfilesFile one = adding(ProfilesFile(), profile("A", "a"));
    const Data before = one.bytes();
    const ProfilesFile two = adding(one, profile("B", "b"));
    const ProfilesFile changed = updating(two, profile("A", "x"));
    const ProfilesFile without = removing(changed, "A");
    EXPECT_EQ(before, one.bytes());
    EXPECT_EQ(expected({profile("A", "a")}), contents(one));
    EXPECT_EQ(expected({profile("A", "a"), profile("B", "b")}), contents(two));
    EXPECT_EQ(expected({profile("A", "x"), profile("B", "b")}), contents(changed));
    EXPECT_EQ(expected({profile("B", "b")}), contents(without));
    EXPECT_EQ(std::nullopt, without.find("A"));
}

TEST(ProfilesFile, randomChanges_giveWhatAPlainListGives) {
    std::mt19937 random(20261120);
    std::vector<Dictionary> model;
    ProfilesFile file;
    int next = 0;
    for (int step = 0; step < 1500; ++step) {
        const auto position = model.empty() ? 0 : random() % model.size();
        const auto choice = random() % 8;
        if (choice < 3 || model.empty()) {
            model.push_back(profile(std::to_string(next++), std::string(random() % 40, 't')));
            file = adding(file, model.back());
        } else if (choice < 6) {
            model[position].insert_or_assign("title", "Größe " + std::to_string(random() % 5));
            model[position].insert_or_assign("enabled", random() % 2 == 0);
            model[position].insert_or_assign("wifiNetworks", Array(random() % 3, Value("net")));
            file = updating(file, model[position]);
        } else {
            file = removing(file, model[position].at("identifier").stringOr());
            model.erase(model.begin() + static_cast<std::ptrdiff_t>(position));
        }
        if (step % 50 == 0) {
            // As another process would find it.
            const auto reread = ProfilesFile::parse(file.bytes());
            ASSERT_TRUE(reread) << reread.error().localizedDescription;
            file = *reread;
        }
        ASSERT_EQ(model.size(), file.profiles().size());
    }
    ASSERT_EQ(expected(model), contents(file));
    for (const auto object : file.profiles()) EXPECT_EQ(object, file.find(file.identifier(object)));
}

TEST(ProfilesFile, changesTogether_areWhatTheyAreOneByOne) {
    std::mt19937 random(20261122);
    // Entries that are no profiles: a number, and one with the identifier of another.
    const Dictionary begun{{"format", 1},
                           {"profiles", Array{7, Dictionary{{"identifier", "0"}, {"engine", "kept"}},
                                              Dictionary{{"identifier", "0"}}}}};
    auto bytes = PropertyListSerialization::dataWithPropertyList(begun, PropertyListFormat::Binary);
    ProfilesFile together = ProfilesFile::parse(*std::move(bytes)).value();
    ProfilesFile alone = together;
    std::size_t most = 0;
    for (int round = 0; round < 60; ++round) {
        ProfilesFile::Changes changes(together);
        for (int step = 0; step < 40; ++step) {
            const std::string identifier = std::to_string(random() % 30);
            const Dictionary values = profile(identifier, std::string(random() % 40, 't'));
            const auto present = alone.find(identifier);
            ASSERT_EQ(present.has_value(), changes.has(identifier));
            ASSERT_EQ(present ? std::optional(alone.values(*present)) : std::nullopt,
                      changes.values(identifier));
            if (!present) {
                changes.add(values);
                alone = adding(alone, values);
            } else if (random() % 3 != 0) {
                changes.update(identifier, values);
                alone = updating(alone, values);
            } else {
                changes.remove(identifier);
                alone = removing(alone, identifier);
            }
        }
        together = changes.finish().value();
        ASSERT_EQ(contents(alone), contents(together)) << round;
        ASSERT_EQ(alone.foreignEntries(), together.foreignEntries());
        ASSERT_TRUE(ProfilesFile::parse(together.bytes()));
        for (const auto object : together.profiles())
            ASSERT_EQ(object, together.find(together.identifier(object)));
        most = std::max(most, together.bytes().size());
    }
    // What is left behind does not pile up.
    EXPECT_LT(most, 30U * 700U);
}

TEST(ProfilesFile, profilesAddedTogether_shareWhatTheyHaveInCommon) {
    ProfilesFile oneByOne;
    ProfilesFile::Changes changes(oneByOne);
    for (int i = 0; i < 100; ++i) changes.add(profile("profile " + std::to_string(i), "title"));
    const ProfilesFile together = changes.finish().value();
    for (int i = 0; i < 100; ++i)
        oneByOne = adding(oneByOne, profile("profile " + std::to_string(i), "title"));
    EXPECT_EQ(contents(oneByOne), contents(together));
    EXPECT_EQ(oneByOne.bytes().size(), together.bytes().size());
}

TEST(ProfilesFile, oneChangeAmongMany_writesOnlyThatProfileAnew) {
    ProfilesFile file;
    for (int i = 0; i < 300; ++i) file = adding(file, profile("profile " + std::to_string(i), "title"));
    const ProfilesFile changed = updating(file, profile("profile 7", "x"));
    // All that stood before the array of the profiles stays where it is, byte for byte.
    const std::size_t kept = static_cast<std::size_t>(
        std::mismatch(file.bytes().begin(), file.bytes().end(), changed.bytes().begin()).first -
        file.bytes().begin());
    EXPECT_GT(kept, 300U * 100U);
    EXPECT_LT(changed.bytes().size(), file.bytes().size() + 400);
}

TEST(ProfilesFile, listsOfOtherWidths_areTakenOver) {
    // The platform's writer takes the smallest widths that do; these are one, two and three bytes.
    for (const int count : {3, 400, 9000}) {
        std::vector<Dictionary> profiles;
        for (int i = 0; i < count; ++i) {
            profiles.push_back({{"identifier", std::to_string(i)},
                                {"title", "t" + std::to_string(i)},
                                {"endTime", "e" + std::to_string(i)},
                                {"unknown", i}});
        }
        auto bytes =
            PropertyListSerialization::dataWithPropertyList(expected(profiles), PropertyListFormat::Binary);
        const auto file = ProfilesFile::parse(*std::move(bytes));
        ASSERT_TRUE(file) << file.error().localizedDescription;
        ASSERT_EQ(static_cast<std::size_t>(count), file->profiles().size());
        profiles.erase(profiles.begin() + 1);
        EXPECT_EQ(expected(profiles), contents(removing(*file, "1")));
    }
}

TEST(ProfilesFile, profileThatWasAdded_isFoundWithItsValues) {
    const ProfilesFile file = adding(ProfilesFile(), profile("A", "a"));
    const auto found = file.find("A");
    ASSERT_TRUE(found);
    EXPECT_EQ(profile("A", "a"), file.values(*found));
}

/// A list under whose "profiles" stand the given references; before them come the objects 0 to 4: the root,
/// its three other parts and the array itself.
class ListOfReferences {
  public:
    static constexpr std::uint32_t firstFree = 6;

    std::uint32_t add(Data object) {
        objects_.push_back(std::move(object));
        return firstFree + static_cast<std::uint32_t>(objects_.size()) - 1;
    }
    static Data text(std::string_view text) {
        Data object{0x5F, 0x12};
        number(object, static_cast<std::uint32_t>(text.size()));
        object.insert(object.end(), text.begin(), text.end());
        return object;
    }
    static Data dictionary(std::uint32_t key, std::uint32_t value) {
        Data object{0xD1};
        number(object, key);
        number(object, value);
        return object;
    }
    Data bytes(const std::vector<std::uint32_t>& references) const {
        Data array{0xAF, 0x12};
        number(array, static_cast<std::uint32_t>(references.size()));
        for (const std::uint32_t reference : references) number(array, reference);
        Data root{0xD2};
        for (const std::uint32_t reference : {1U, 2U, 3U, 4U}) number(root, reference);
        std::vector<Data> all{root, text("format"), text("profiles"), {0x10, 1}, array, {0x09}};
        all.insert(all.end(), objects_.begin(), objects_.end());
        Data result;
        for (const char character : std::string_view("bplist00"))
            result.push_back(static_cast<std::uint8_t>(character));
        Data table;
        for (const Data& object : all) {
            number(table, static_cast<std::uint32_t>(result.size()));
            result.insert(result.end(), object.begin(), object.end());
        }
        const std::size_t start = result.size();
        result.insert(result.end(), table.begin(), table.end());
        result.insert(result.end(), {0, 0, 0, 0, 0, 0, 4, 4, 0, 0, 0, 0});
        number(result, static_cast<std::uint32_t>(all.size()));
        result.insert(result.end(), 12, 0);
        number(result, static_cast<std::uint32_t>(start));
        return result;
    }

  private:
    static void number(Data& to, std::uint32_t number) {
        for (int shift = 24; shift >= 0; shift -= 8) to.push_back(static_cast<std::uint8_t>(number >> shift));
    }

    std::vector<Data> objects_;
};

// These two take seconds; comparing the identifiers two by two, they would outlast any time limit.
TEST(ProfilesFile, oneObjectMillionsOfTimes_isOneProfile) {
    ListOfReferences list;
    const auto key = list.add(ListOfReferences::text("identifier"));
    const auto name = list.add(ListOfReferences::text(std::string(1000, 'n')));
    const auto entry = list.add(ListOfReferences::dictionary(key, name));
    constexpr std::size_t count = 3'000'000;
    const auto file = ProfilesFile::parse(list.bytes(std::vector<std::uint32_t>(count, entry)));
    ASSERT_TRUE(file) << file.error().localizedDescription;
    EXPECT_EQ(1U, file->profiles().size());
    EXPECT_EQ(count - 1, file->foreignEntries());
    EXPECT_EQ(0U, removing(*file, std::string(1000, 'n')).foreignEntries())
        << "each would be the profile come back";
}

TEST(ProfilesFile, oneLongIdentifierManyTimes_isReadOnce) {
    ListOfReferences list;
    const auto key = list.add(ListOfReferences::text("identifier"));
    const auto name = list.add(ListOfReferences::text(std::string(1 << 20, 'n')));
    const auto other = list.add(ListOfReferences::text(std::string(1 << 20, 'n') + "x"));
    std::vector<std::uint32_t> references;
    for (int i = 0; i < 100'000; ++i)
        references.push_back(list.add(ListOfReferences::dictionary(key, i % 2 ? name : other)));
    const auto file = ProfilesFile::parse(list.bytes(references));
    ASSERT_TRUE(file) << file.error().localizedDescription;
    EXPECT_EQ(2U, file->profiles().size());
    EXPECT_EQ(file->profiles().at(1), file->find(std::string(1 << 20, 'n')));
    const ProfilesFile without = removing(*file, file->identifier(file->profiles().at(0)));
    EXPECT_EQ(1U, without.profiles().size());
    EXPECT_EQ(49'999U, without.foreignEntries());
}

TEST(ProfilesFile, everyPrefixAndFlippedByte_isRefusedOrCanBeChanged) {
    ProfilesFile file;
    for (const char* identifier : {"A", "B", "C"}) file = adding(file, profile(identifier, "Büro"));
    const Data whole = file.bytes();
    int refused = 0;
    for (std::size_t at = 0; at < whole.size(); ++at) {
        EXPECT_FALSE(
            ProfilesFile::parse(Data(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(at))));
        for (const std::uint8_t flip : std::to_array<std::uint8_t>({0x01, 0x40, 0xFF})) {
            Data changed = whole;
            changed[at] ^= flip;
            const auto parsed = ProfilesFile::parse(std::move(changed));
            if (!parsed) {
                ++refused;
                continue;
            }
            const ProfilesFile next = adding(*parsed, profile("new", "n"));
            EXPECT_TRUE(ProfilesFile::parse(next.bytes())) << at;
            EXPECT_EQ(parsed->profiles().size() + 1, next.profiles().size());
        }
    }
    EXPECT_GT(refused, 0);
}

}  // namespace
