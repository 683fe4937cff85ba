// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "tests/profile/model/StoreFixture.h"

namespace {

using doubles::required;
using platform::Array;
using platform::Data;
using platform::Dictionary;
using platform::Value;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class StoreBadFile : public StoreFixture {
  protected:
    /// No change goes into such a file, each names it and the reason, and the store keeps what it has.
    void expectRefused(const Data& bytes, const std::string& reason) {
        const auto good = stored("A");
        const std::size_t lines = phone_.log->lines().size();
        phone_.files->put(path_, bytes);
        store_->reloadProfiles();
        store_->reloadProfiles();
        ASSERT_EQ(lines + 1, phone_.log->lines().size()) << reason;
        EXPECT_THAT(phone_.log->lines().back(), AllOf(HasSubstr(path_), HasSubstr(reason)));
        EXPECT_EQ(good, stored("A"));
        EXPECT_THAT(update(profile("A")), AllOf(HasSubstr(path_), HasSubstr(reason)));
        EXPECT_THAT(add(profile("N")), AllOf(HasSubstr(path_), HasSubstr(reason)));
        EXPECT_THAT(remove(profile("A")), AllOf(HasSubstr(path_), HasSubstr(reason)));
        EXPECT_EQ(lines + 1, phone_.log->lines().size()) << reason;
        EXPECT_EQ(bytes, rawFile()) << reason;
    }
    static Data text(std::string_view characters) { return {characters.begin(), characters.end()}; }
};

TEST_F(StoreBadFile, fileOfAnotherForm_isNeverOverwritten) {
    putFile(fileOf({profile("A")->storedValues()}));
    ASSERT_NE(nullptr, stored("A"));
    expectRefused(bytesOf(Array{1}), "dictionary");
    expectRefused(bytesOf(Value("text")), "dictionary");
    expectRefused(bytesOf(Dictionary{{"profiles", Array{}}}), "\"format\"");
}

TEST_F(StoreBadFile, everyWrongForm_isNamed) {
    putFile(fileOf({profile("A")->storedValues()}));
    ASSERT_NE(nullptr, stored("A"));
    expectRefused(bytesOf(Dictionary{{"format", 2}, {"profiles", Array{}}}),
                  "\"format\" is 2, and only 1 is known: use the version of the program that wrote it");
    expectRefused(bytesOf(Dictionary{{"format", true}, {"profiles", Array{}}}), "\"format\"");
    expectRefused(bytesOf(Dictionary{{"format", 1.0}, {"profiles", Array{}}}), "\"format\"");
    expectRefused(bytesOf(Dictionary{{"format", 1}}), "\"profiles\"");
    expectRefused(bytesOf(Dictionary{{"format", 1}, {"profiles", Dictionary{}}}), "\"profiles\"");
    expectRefused({}, "empty");
    expectRefused(text("hello"), "no property list");
    expectRefused(text("bplist00"), "too short");
    expectRefused(text("<?xml version=\"1.0\"?><plist><dict><key>format</key>"), "line");
}

TEST_F(StoreBadFile, truncatedFile_isNeverOverwritten) {
    const Data whole = bytesOf(fileOf({profile("A")->storedValues(), profile("B", "Büro")->storedValues()}));
    putFile(fileOf({profile("A")->storedValues()}));
    ASSERT_NE(nullptr, stored("A"));
    for (std::size_t size = 0; size < whole.size(); size += 13) {
        expectRefused(Data(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)), path_);
    }
}

TEST_F(StoreBadFile, hugeClaims_areRefused) {
    Data bytes = bytesOf(fileOf({profile("A")->storedValues()}));
    putFile(fileOf({profile("A")->storedValues()}));
    ASSERT_NE(nullptr, stored("A"));
    const std::size_t trailer = bytes.size() - 32;
    Data many = bytes;
    std::fill_n(many.begin() + static_cast<std::ptrdiff_t>(trailer + 8), 8, std::uint8_t{0xFF});
    expectRefused(many, "number of objects");
    Data far = bytes;
    std::fill_n(far.begin() + static_cast<std::ptrdiff_t>(trailer + 24), 8, std::uint8_t{0xFF});
    expectRefused(far, "offset table");
}

TEST_F(StoreBadFile, deeplyNestedFile_isRefused) {
    putFile(fileOf({profile("A")->storedValues()}));
    ASSERT_NE(nullptr, stored("A"));
    // Arrays that each hold the next one, 600 deep, with references of two bytes.
    Data bytes = text("bplist00");
    constexpr int depth = 600;
    Data table;
    const auto two = [](Data& to, std::size_t number) {
        to.push_back(static_cast<std::uint8_t>(number >> 8));
        to.push_back(static_cast<std::uint8_t>(number));
    };
    for (int i = 0; i < depth; ++i) {
        two(table, bytes.size());
        bytes.push_back(i + 1 < depth ? 0xA1 : 0xA0);
        if (i + 1 < depth) two(bytes, static_cast<std::size_t>(i) + 1);
    }
    const std::size_t tableStart = bytes.size();
    bytes.insert(bytes.end(), table.begin(), table.end());
    bytes.insert(bytes.end(), {0, 0, 0, 0, 0, 0, 2, 2, 0, 0, 0, 0, 0, 0, depth >> 8, depth & 0xFF});
    bytes.insert(bytes.end(), 14, 0);
    two(bytes, tableStart);
    expectRefused(bytes, "nest");
}

TEST_F(StoreBadFile, badFileAtTheStart_isAnEmptyStoreThatRefusesChanges) {
    phone_.files->put(path_, "rescue me");
    EXPECT_THAT(store_->enabledProfiles(), IsEmpty());
    EXPECT_EQ(nullptr, stored("A"));
    EXPECT_THAT(add(profile("A")), HasSubstr(path_));
    EXPECT_EQ(text("rescue me"), rawFile());
    EXPECT_EQ(1U, phone_.log->lines().size());
}

TEST_F(StoreBadFile, fileThatIsMended_isTakenOver) {
    phone_.files->put(path_, "broken");
    store_->reloadProfiles();
    putFile(fileOf({profile("A")->storedValues()}));
    store_->reloadProfiles();
    EXPECT_NE(nullptr, stored("A"));
    EXPECT_EQ("success", update(stored("A")));
    phone_.files->put(path_, "broken");
    store_->reloadProfiles();
    EXPECT_EQ(2U, phone_.log->lines().size());
}

TEST_F(StoreBadFile, unreadableFile_keepsTheStoreAndIsTriedAgain) {
    putFile(fileOf({profile("A", "old")->storedValues()}));
    const auto record = stored("A");
    putFile(fileOf({profile("A", "new")->storedValues()}));
    phone_.files->failReads("Input/output error");
    store_->reloadProfiles();
    store_->reloadProfiles();
    EXPECT_EQ(record, stored("A"));
    EXPECT_THAT(phone_.log->lines(), ElementsAre(AllOf(HasSubstr(path_), HasSubstr("Input/output error"))));
    EXPECT_THAT(update(record), AllOf(HasSubstr(path_), HasSubstr("Input/output error")));
    phone_.takeEvents();
    store_->reloadProfiles();
    EXPECT_EQ(Value(false), phone_.takeEvents("store").at(0).at("ok"));
    phone_.files->failReads("");
    store_->reloadProfiles();
    EXPECT_EQ("new", required(stored("A"))->title());
    EXPECT_EQ(1U, phone_.log->lines().size());
}

}  // namespace
