// SPDX-License-Identifier: MIT
// What reading a large profiles file takes. A program of its own, as it counts what is allocated. What is
// made beside the bytes grows with them, so a file of some MiB tells what one of 64 MiB would; only what the
// program does to files above that size is tried with one.
#include <gtest/gtest.h>
#include <malloc.h>

#include <atomic>
#include <cstdlib>
#include <new>

#include "platform/foundation/LargeXMLList.h"
#include "platform/foundation/PropertyList.h"
#include "profile/model/ProfilesFileChanges.h"
#include "profile/model/QXProfile.h"
#include "tests/doubles/Required.h"

namespace {

using doubles::errorOf;

std::atomic<std::size_t> allocated = 0;
std::atomic<std::size_t> most = 0;
/// What was ever allocated, whether it was released or not.
std::atomic<std::size_t> total = 0;

/// Null where there is no memory.
void* countedAllocation(std::size_t size) {
    void* const block = std::malloc(size);
    if (!block) return nullptr;
    const std::size_t now = allocated += malloc_usable_size(block);
    total += size;
    if (now > most) most = now;
    return block;
}

void countedRelease(void* block) {
    if (block) allocated -= malloc_usable_size(block);
    std::free(block);
}

}  // namespace

void* operator new(std::size_t size) {
    if (void* const block = countedAllocation(size)) return block;
    throw std::bad_alloc();
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return countedAllocation(size);
}
void operator delete(void* block) noexcept {
    countedRelease(block);
}
void operator delete(void* block, std::size_t) noexcept {
    countedRelease(block);
}

namespace {

using platform::Data;
using quietrix::ProfilesFile;

constexpr std::size_t largeSize = ProfilesFile::largeSize;
/// So large that what is allocated once, whatever the file, weighs nothing.
constexpr std::size_t enough = largeSize / 16;

/// Reads the bytes and tells by how many times their size the memory grew at most, they themselves included.
double readingTakes(Data bytes, platform::Result<ProfilesFile>& file) {
    const std::size_t size = bytes.size();
    EXPECT_GT(size, enough);
    const std::size_t before = allocated - bytes.capacity();
    most = allocated.load();
    file = ProfilesFile::parse(std::move(bytes));
    return static_cast<double>(most - before) / static_cast<double>(size);
}

void append(Data& bytes, std::string_view text) {
    bytes.insert(bytes.end(), text.begin(), text.end());
}

void append(Data& bytes, std::uint64_t number, int width) {
    for (int shift = 8 * (width - 1); shift >= 0; shift -= 8)
        bytes.push_back(static_cast<std::uint8_t>(number >> shift));
}

/// Makes a binary list by hand: the root {"format": 1, "profiles": [the references]} as objects 0 to 4, with
/// references of four bytes.
class Binary {
  public:
    explicit Binary(std::uint32_t references) : references_(references) {
        bytes_.reserve(std::size_t{9} * references + enough + enough / 4);
        append(bytes_, "bplist00");
        begin();
        append(bytes_, std::string_view("\xD2\0\0\0\1\0\0\0\2\0\0\0\3\0\0\0\4", 17));
        begin();
        append(bytes_,
               "\x56"
               "format");
        begin();
        append(bytes_, "\x58profiles");
        begin();
        append(bytes_, "\x10\1");
        begin();
        append(bytes_, "\xAF\x12");
        append(bytes_, references, 4);
        bytes_.resize(bytes_.size() + std::size_t{4} * references);
    }
    std::uint32_t begin() {
        table_.push_back(static_cast<std::uint32_t>(bytes_.size()));
        return static_cast<std::uint32_t>(table_.size() - 1);
    }
    /// So many objects that all begin here.
    void beginAgain(std::size_t count) {
        table_.resize(table_.size() + count, static_cast<std::uint32_t>(bytes_.size()));
    }
    Data& bytes() { return bytes_; }
    void refer(std::uint32_t position, std::uint32_t object) {
        putNumber(bytes_.data() + table_[4] + 6 + std::size_t{4} * position, object);
    }
    std::uint32_t references() const { return references_; }
    Data finish() && {
        const std::size_t start = bytes_.size();
        bytes_.resize(start + 4 * table_.size());
        std::uint8_t* at = bytes_.data() + start;
        for (const std::uint32_t offset : table_) at = putNumber(at, offset);
        append(bytes_, 0, 6);
        append(bytes_, 4, 1);
        append(bytes_, 4, 1);
        append(bytes_, table_.size(), 8);
        append(bytes_, 0, 8);
        append(bytes_, start, 8);
        bytes_.shrink_to_fit();
        return std::move(bytes_);
    }

  private:
    /// Gives the place behind it.
    static std::uint8_t* putNumber(std::uint8_t* at, std::uint32_t number) {
        for (int shift = 24; shift >= 0; shift -= 8) *at++ = static_cast<std::uint8_t>(number >> shift);
        return at;
    }

    std::uint32_t references_;
    Data bytes_;
    std::vector<std::uint32_t> table_;
};

/// What is allocated while so many profiles are added together, and then changed together.
std::size_t changingTakes(int count) {
    const std::size_t before = total;
    quietrix::QXProfile record;
    const ProfilesFile none;
    ProfilesFile::Changes additions(none);
    for (int i = 0; i < count; ++i) {
        record.setIdentifier(std::to_string(i));
        additions.add(record.storedValues());
    }
    const auto file = additions.finish();
    EXPECT_TRUE(file);
    ProfilesFile::Changes changes(*file);
    record.setTitle("changed");
    for (int i = 0; i < count; ++i) {
        record.setIdentifier(std::to_string(i));
        if (i % 10 == 0) {
            changes.remove(record.identifier());
        } else {
            changes.update(record.identifier(), record.storedValues());
        }
    }
    EXPECT_TRUE(changes.finish());
    return total - before;
}

TEST(ManyChanges, twiceAsMany_takeTwiceAsMuch) {
    EXPECT_LT(changingTakes(400), changingTakes(200) * 5 / 2);
}

TEST(LargeProfilesFile, shortestProfilesThereAre_takeThreeTimesTheirSizeAtMost) {
    constexpr std::uint32_t count = 165'000;
    Binary list(count);
    const std::uint32_t key = list.begin();
    append(list.bytes(),
           "\x5A"
           "identifier");
    for (std::uint32_t i = 0; i < count; ++i) {
        const std::uint32_t name = list.begin();
        append(list.bytes(), "\x54");
        // Seven bits a byte: a text that no other has.
        for (int shift = 21; shift >= 0; shift -= 7) append(list.bytes(), i >> shift & 0x7F, 1);
        list.refer(i, list.begin());
        append(list.bytes(), "\xD1");
        append(list.bytes(), key, 4);
        append(list.bytes(), name, 4);
    }
    platform::Result<ProfilesFile> file = ProfilesFile();
    EXPECT_LE(readingTakes(std::move(list).finish(), file), 3.0);
    ASSERT_TRUE(file) << file.error().localizedDescription;
    EXPECT_EQ(count, file->profiles().size());
}

TEST(LargeProfilesFile, shortestObjectsThereAre_takeThreeTimesTheirSizeAtMost) {
    constexpr std::uint32_t count = 500'000;
    Binary list(count);
    for (std::uint32_t i = 0; i < count; ++i) {
        list.refer(i, list.begin());
        append(list.bytes(), "\x09");
    }
    platform::Result<ProfilesFile> file = ProfilesFile();
    EXPECT_LE(readingTakes(std::move(list).finish(), file), 3.0);
    ASSERT_TRUE(file) << file.error().localizedDescription;
    EXPECT_EQ(count, file->foreignEntries());
}

TEST(LargeProfilesFile, oneEntryAgainAndAgain_isRefusedWithinThreeTimesItsSize) {
    Binary list(17'000'000);
    const std::uint32_t entry = list.begin();
    append(list.bytes(), "\x09");
    for (std::uint32_t i = 0; i < list.references(); ++i) list.refer(i, entry);
    platform::Result<ProfilesFile> file = ProfilesFile();
    Data bytes = std::move(list).finish();
    ASSERT_GT(bytes.size(), largeSize);
    EXPECT_LE(readingTakes(std::move(bytes), file), 3.0);
    ASSERT_FALSE(file);
    EXPECT_EQ("Its array \"profiles\" names the same few objects too often.", errorOf(file));
}

TEST(LargeProfilesFile, objectsOnTopOfEachOther_areRefusedWithinThreeTimesTheirSize) {
    Binary list(0);
    append(list.bytes(), std::string(2, '\x09'));
    list.beginAgain(17'000'000);
    Data bytes = std::move(list).finish();
    ASSERT_GT(bytes.size(), largeSize);
    platform::Result<ProfilesFile> file = ProfilesFile();
    EXPECT_LE(readingTakes(std::move(bytes), file), 3.0);
    EXPECT_FALSE(file);
}

std::string nameOf(int number) {
    const std::string digits = std::to_string(number);
    return "profile-" + std::string(8 - digits.size(), '0') + digits;
}

quietrix::QXProfile& profileOf(quietrix::QXProfile& profile, int number) {
    profile.setIdentifier(nameOf(number));
    profile.setTitle("Größe");
    return profile;
}

/// An XML file of so many profiles, with other entries before and behind them.
Data xmlFile(int count) {
    quietrix::QXProfile profile;
    const Data whole =
        platform::PropertyListSerialization::dataWithPropertyList(
            platform::Value(profileOf(profile, 0).storedValues()), platform::PropertyListFormat::XML)
            .value();
    std::string text(whole.begin(), whole.end());
    text = text.substr(text.find("<dict>"), text.rfind("</plist>") - text.find("<dict>"));
    const std::size_t name = text.find(nameOf(0));
    Data bytes;
    bytes.reserve(text.size() * static_cast<std::size_t>(count) + 1000);
    append(bytes,
           "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">\n<dict>"
           "<key>more</key><array><string>x</string><dict/></array>"
           "<key>format</key><integer>9</integer><key>profiles</key>\n<array>\n");
    for (int i = 0; i < count; ++i) append(bytes, text.replace(name, nameOf(0).size(), nameOf(i)));
    append(bytes, "</array><key>format</key><integer>1</integer></dict>\n</plist>\n");
    return bytes;
}

TEST(LargeProfilesFile, xmlFile_takesThreeTimesItsSizeAtMost) {
    // What is made of a piece weighs less the larger the file is.
    const std::size_t each = xmlFile(1).size() - xmlFile(0).size();
    const int count = static_cast<int>(enough / each);
    const Data document = xmlFile(count);
    const std::size_t before = allocated - document.capacity();
    most = allocated.load();
    auto binary = platform::LargeXMLList::toBinary(document);
    EXPECT_LE(static_cast<double>(most - before) / static_cast<double>(document.size()), 3.0);
    ASSERT_TRUE(binary) << binary.error().localizedDescription;
    const auto file = ProfilesFile::parse(*std::move(binary));
    ASSERT_TRUE(file) << file.error().localizedDescription;
    ASSERT_EQ(static_cast<std::size_t>(count), file->profiles().size());
    for (const int number : {0, count / 2, count - 1}) {
        quietrix::QXProfile expected;
        const auto found = file->find(nameOf(number));
        ASSERT_TRUE(found);
        EXPECT_EQ(platform::Value(profileOf(expected, number).storedValues()),
                  platform::Value(file->values(*found)));
    }
}

TEST(LargeProfilesFile, xmlFile_isConvertedPieceByPiece) {
    Data document = xmlFile(2);
    const std::string_view end = "</array>";
    const auto found = std::find_end(document.begin(), document.end(), end.begin(), end.end());
    ASSERT_NE(document.end(), found);
    *(found + 2) = 'A';
    document.resize(document.size() + largeSize, '\n');
    const auto damaged = ProfilesFile::parse(std::move(document));
    ASSERT_FALSE(damaged);
    EXPECT_NE(std::string::npos, errorOf(damaged).find("</array> is expected"))
        << "the reader of whole documents words it otherwise";
}

}  // namespace
