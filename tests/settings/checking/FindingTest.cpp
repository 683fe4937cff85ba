// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "settings/checking/AcceptedFindings.h"
#include "settings/checking/Report.h"
#include "settings/checking/TextWidth.h"

namespace {

using settings::Finding;
using settings::FindingKind;
using settings::Findings;
using settings::parseAcceptedFindings;
using testing::ElementsAre;
using testing::HasSubstr;

platform::Data bytes(std::string_view text) {
    return {text.begin(), text.end()};
}

std::string errorOf(std::string_view text) {
    const auto parsed = parseAcceptedFindings(bytes(text));
    return parsed ? "" : parsed.error().localizedDescription;
}

Finding finding(FindingKind kind, std::string screen, std::string subject) {
    return {.kind = kind,
            .screen = std::move(screen),
            .row = "row",
            .subject = std::move(subject),
            .text = "Text."};
}

}  // namespace

TEST(Findings, Add_theSameInAnotherLanguage_isOneFindingInBoth) {
    Findings findings;
    findings.add(finding(FindingKind::CutLabel, "B", "x"), "en");
    findings.add(finding(FindingKind::CutLabel, "A", "x"), "en");
    findings.add(finding(FindingKind::CutLabel, "B", "x"), "de");
    ASSERT_EQ(findings.all().size(), 2U);
    EXPECT_EQ(findings.all()[0].screen, "A");
    EXPECT_THAT(findings.all()[1].languages, ElementsAre("de", "en"));
}

TEST(AcceptedFindings, Sort_takesWhatFitsAndTellsWhatIsUnused) {
    const auto accepted = parseAcceptedFindings(
        bytes("{\"kind\":\"cutLabel\",\"screen\":\"A\",\"reason\":\"why\"}\n\n{\"kind\":\"cutLabel\","
              "\"subject\":\"never\",\"reason\":\"old\"}\n"));
    ASSERT_TRUE(accepted);
    const auto sorted = settings::sortFindings(
        {finding(FindingKind::CutLabel, "A", "x"), finding(FindingKind::SmallTarget, "A", "x"),
         finding(FindingKind::CutLabel, "B", "x")},
        *accepted);
    ASSERT_EQ(sorted.accepted.size(), 1U);
    EXPECT_EQ(sorted.accepted[0].second, "why");
    EXPECT_EQ(sorted.open.size(), 2U);
    ASSERT_EQ(sorted.unused.size(), 1U);
    EXPECT_EQ(sorted.unused[0].subject, "never");
}

TEST(AcceptedFindings, Parse_propertyList_isReadAsLinesAre) {
    const auto accepted = parseAcceptedFindings(bytes(
        "<plist version=\"1.0\"><array><dict><key>kind</key><string>smallTarget</string>"
        "<key>row</key><string>r</string><key>reason</key><string>why</string></dict></array></plist>"));
    ASSERT_TRUE(accepted);
    ASSERT_EQ(accepted->size(), 1U);
    EXPECT_EQ(accepted->front().row, "r");
}

TEST(AcceptedFindings, Parse_entryThatIsWrong_isNamed) {
    EXPECT_THAT(errorOf("{\"kind\":\"cutLabel\",\"reason\":\"a\"}\n{\"kind\":\"other\",\"reason\":\"a\"}"),
                HasSubstr("Line 2 has the unknown kind \"other\""));
    EXPECT_THAT(errorOf("{\"kind\":\"cutLabel\"}"), HasSubstr("Line 1 has no reason"));
    EXPECT_THAT(errorOf("{\"kind\":\"cutLabel\",\"reason\":\"a\",\"scren\":\"A\"}"), HasSubstr("\"scren\""));
    EXPECT_THAT(errorOf("{\"kind\":\"cutLabel\",\"reason\":1}"), HasSubstr("no text under \"reason\""));
    EXPECT_THAT(errorOf("{\"kind\""), HasSubstr("Line 1 is no JSON"));
    EXPECT_THAT(errorOf("<plist version=\"1.0\"><dict/></plist>"), HasSubstr("no array"));
}

TEST(TextWidth, Width_growsWithLettersAndSize) {
    EXPECT_DOUBLE_EQ(settings::textWidth("", 17), 0);
    EXPECT_LT(settings::textWidth("iii", 17), settings::textWidth("mmm", 17));
    EXPECT_DOUBLE_EQ(settings::textWidth("Bell", 34), 2 * settings::textWidth("Bell", 17));
    EXPECT_DOUBLE_EQ(settings::textWidth("設定", 17), 34);
    // A combining accent stands above its letter.
    EXPECT_DOUBLE_EQ(settings::textWidth("e\xCC\x81", 17), settings::textWidth("e", 17));
    // Bytes that are no text end somewhere.
    EXPECT_GT(settings::textWidth("\xF0", 17), -1);
}

TEST(TextWidth, Lines_breakAtBlanksAndInWordsThatAreTooWide) {
    const double oneWord = settings::textWidth("word", 17);
    EXPECT_EQ(settings::linesOfText("word word", 17, oneWord * 3), 1);
    EXPECT_EQ(settings::linesOfText("word word", 17, oneWord * 1.5), 2);
    EXPECT_EQ(settings::linesOfText("word\nword", 17, oneWord * 3), 2);
    EXPECT_EQ(settings::linesOfText("設定設定設定", 10, 20), 3);
    EXPECT_EQ(settings::linesOfText("", 17, 10), 1);
}

TEST(Report, JUnit_textsThatAreMarkup_areEscaped) {
    settings::CheckOutcome outcome;
    outcome.screens = {"A"};
    settings::SortedFindings sorted;
    sorted.open.push_back({.kind = FindingKind::CutLabel,
                           .screen = "A",
                           .row = "r",
                           .subject = "s",
                           .text = "<a> & \"b\"]]>\x01"});
    const std::string text = settings::reportAsJUnit(outcome, sorted);
    EXPECT_THAT(text, HasSubstr("&lt;a&gt; &amp; &quot;b&quot;]]&gt; "));
    EXPECT_THAT(text, HasSubstr("tests=\"2\" failures=\"1\""));
}
