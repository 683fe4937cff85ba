// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>

#include "platform/foundation/Bundle.h"
#include "platform/foundation/PropertyList.h"
#include "platform/foundation/PseudoLanguage.h"
#include "platform/foundation/Unicode.h"
#include "tests/doubles/Phone.h"

namespace {

using platform::Bundle;
using platform::PseudoLanguage;

std::string accented(std::string_view text) {
    return pseudoLocalized(text, PseudoLanguage::Accented);
}

TEST(PseudoLanguage, onlyItsOwnTags_meanOne) {
    EXPECT_EQ(platform::pseudoLanguageOfTag("en-XA"), PseudoLanguage::Accented);
    EXPECT_EQ(platform::pseudoLanguageOfTag("ar-XB"), PseudoLanguage::RightToLeft);
    for (const char* tag : {"", "en", "ar", "XA", "en-XB", "ar-XA", "en-xa", "en-XA-x", "en_XA"})
        EXPECT_EQ(platform::pseudoLanguageOfTag(tag), std::nullopt) << tag;
}

TEST(PseudoLanguage, text_isAccentedLongerAndInBrackets) {
    EXPECT_EQ(accented("Vibrate"), "[Ṽîîƀŕååţéé]");
    EXPECT_EQ(accented("ABC xyz"), "[ÅÅƁÇ ẋýž~~]");
    EXPECT_EQ(accented("Zürich ✓ 3"), "[Žüŕîîçĥ ✓ 3~]");
    const std::string text = "Silences the phone while a meeting of yours is on";
    const auto length = [](std::string_view counted) {
        return std::ranges::count_if(counted, [](char byte) { return (byte & 0xC0) != 0x80; });
    };
    const double growth = static_cast<double>(length(accented(text))) / static_cast<double>(text.size());
    EXPECT_GT(growth, 1.3);
    EXPECT_LT(growth, 1.5);
    EXPECT_EQ(platform::firstInvalidUTF8(accented(text)), std::nullopt);
}

TEST(PseudoLanguage, whatValuesArePutInFor_staysAsItIs) {
    EXPECT_EQ(accented("%@"), "[%@]");
    EXPECT_EQ(accented("%1$@ of %2$d"), "[%1$@ ööƒ %2$d]");
    EXPECT_EQ(accented("%d%% %5.2f %ld %-10s %zu %*d"), "[%d%% %5.2f %ld %-10s %zu %*d]");
    EXPECT_EQ(accented("%lld%@%C"), "[%lld%@%C]");
    // A per cent sign that means nothing to a format is a letter like others.
    EXPECT_EQ(accented("10 % on"), "[10 % ööñ]");
    EXPECT_EQ(accented("%"), "[%]");
    EXPECT_EQ(accented("%1$"), "[%1$]");
    EXPECT_EQ(accented("%k"), "[%ķ~]");
}

TEST(PseudoLanguage, linesAndBlanks_stayWhereTheyAre) {
    EXPECT_EQ(accented("On\n\nit\r\n"), "[ÖÖñ\n\nîîţ\r\n]");
    for (const char* blank : {"", " ", "\n", " \t\r\n"}) EXPECT_EQ(accented(blank), blank);
}

TEST(PseudoLanguage, fromTheRight_leavesTheDirectionOfWhatIsPutIn) {
    const auto written = [](std::string_view text) {
        return pseudoLocalized(text, PseudoLanguage::RightToLeft);
    };
    EXPECT_EQ(written("On"), "[\u202EÖÖñ\u202C]");
    EXPECT_EQ(written("At %@ on\nit"), "[\u202EÅÅţ \u202C%@\u202E ööñ\u202C\n\u202Eîîţ\u202C]");
    EXPECT_EQ(written("%@"), "[%@\u202E\u202C]");
}

class PseudoBundleTest : public testing::Test {
  protected:
    std::string text(const std::string& key, std::vector<std::string> languages) {
        phone.facts->languages = std::move(languages);
        return Bundle(path).localizedStringForKey_value_table(key, "", "");
    }

    doubles::Phone phone;
    const std::string path = "/Library/Some.bundle";
};

TEST_F(PseudoBundleTest, text_isMadeFromTheDevelopmentRegions) {
    phone.files->put(path + "/en.lproj/Localizable.strings", "\"a\" = \"On\";");
    phone.files->put(path + "/ar.lproj/Localizable.strings", "\"a\" = \"arabic\";");
    EXPECT_EQ(text("a", {"en-XA"}), "[ÖÖñ]");
    EXPECT_EQ(text("a", {"ar-XB", "de"}), "[\u202EÖÖñ\u202C]");
    EXPECT_EQ(text("a", {"ar", "en-XA"}), "arabic");
    EXPECT_EQ(text("missing", {"en-XA"}), "missing");
    EXPECT_EQ(text("a", {"en"}), "On");
}

TEST_F(PseudoBundleTest, bundleOfAnotherRegion_isTakenFromThat) {
    phone.files->put(path + "/Info.plist", *platform::PropertyListSerialization::dataWithPropertyList(
                                               platform::Dictionary{{"CFBundleDevelopmentRegion", "de"}},
                                               platform::PropertyListFormat::XML));
    phone.files->put(path + "/en.lproj/Localizable.strings", "\"a\" = \"On\";");
    phone.files->put(path + "/de.lproj/Localizable.strings", "\"a\" = \"An\";");
    EXPECT_EQ(text("a", {"en-XA"}), "[ÅÅñ]");
}

}  // namespace
