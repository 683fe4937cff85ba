// SPDX-License-Identifier: MIT
#include "settings/checking/Report.h"

#include <optional>
#include <string_view>

#include "settings/channels/JSON.h"

namespace settings {

using platform::Array;
using platform::Dictionary;

namespace {

constexpr std::string_view filesTitle = "Files of the bundle";

std::string titleOfScreen(const std::string& screen) {
    return std::string(screen.empty() ? filesTitle : screen);
}

std::string inLanguages(const Finding& finding) {
    std::string list;
    for (const std::string& language : finding.languages) list += (list.empty() ? " (" : ", ") + language;
    return list.empty() ? list : list + ")";
}

std::string lineOf(const Finding& finding) {
    return (finding.row.empty() ? "" : "\"" + finding.row + "\": ") + finding.text + inLanguages(finding) +
           " [" + std::string(nameOfKind(finding.kind)) + "]";
}

std::string counted(std::size_t count, const std::string& thing) {
    return std::to_string(count) + " " + thing + (count == 1 ? "" : "s");
}

Dictionary dictionaryOf(const Finding& finding) {
    Array languages;
    for (const std::string& language : finding.languages) languages.emplace_back(language);
    return {
        {"kind", nameOfKind(finding.kind)}, {"screen", finding.screen}, {"row", finding.row},
        {"subject", finding.subject},       {"text", finding.text},     {"languages", std::move(languages)}};
}

Dictionary dictionaryOf(const AcceptedFinding& entry) {
    return {{"kind", entry.kind},
            {"screen", entry.screen},
            {"row", entry.row},
            {"subject", entry.subject},
            {"reason", entry.reason}};
}

std::string escaped(std::string_view text) {
    std::string result;
    for (const char letter : text) {
        switch (letter) {
            case '&':
                result += "&amp;";
                break;
            case '<':
                result += "&lt;";
                break;
            // Ends a section of text when it stands behind two brackets.
            case '>':
                result += "&gt;";
                break;
            case '"':
                result += "&quot;";
                break;
            default:
                // XML has no control characters.
                result += static_cast<unsigned char>(letter) < ' ' ? ' ' : letter;
        }
    }
    return result;
}

}  // namespace

std::string reportForPeople(const CheckOutcome& outcome, const SortedFindings& sorted) {
    std::string text;
    std::optional<std::string> screen;
    for (const Finding& finding : sorted.open) {
        if (screen != finding.screen) text += (screen ? "\n" : "") + titleOfScreen(finding.screen) + "\n";
        screen = finding.screen;
        text += "  " + lineOf(finding) + "\n";
    }
    if (screen) text += "\n";
    for (const AcceptedFinding& entry : sorted.unused) {
        text += "Accepted, but not found any more: " + entry.kind;
        for (const std::string& part : {entry.screen, entry.row, entry.subject})
            text += part.empty() ? "" : ", " + part;
        text += " (" + entry.reason + ")\n";
    }
    return text + counted(sorted.open.size(), "finding") + ", " + std::to_string(sorted.accepted.size()) +
           " accepted, on " + counted(outcome.screens.size(), "screen") + " in " +
           counted(outcome.tours, "tour") + ".\n";
}

std::string reportAsJSON(const CheckOutcome& outcome, const SortedFindings& sorted) {
    Array findings;
    for (const Finding& finding : sorted.open) findings.emplace_back(dictionaryOf(finding));
    Array accepted;
    for (const auto& [finding, reason] : sorted.accepted) {
        Dictionary entry = dictionaryOf(finding);
        entry["reason"] = reason;
        accepted.emplace_back(std::move(entry));
    }
    Array unused;
    for (const AcceptedFinding& entry : sorted.unused) unused.emplace_back(dictionaryOf(entry));
    Array screens;
    for (const std::string& screen : outcome.screens) screens.emplace_back(screen);
    return jsonText(Dictionary{{"findings", std::move(findings)},
                               {"accepted", std::move(accepted)},
                               {"unused", std::move(unused)},
                               {"screens", std::move(screens)},
                               {"tours", static_cast<std::int64_t>(outcome.tours)}}) +
           "\n";
}

std::string reportAsJUnit(const CheckOutcome& outcome, const SortedFindings& sorted) {
    std::set<std::string> names = outcome.screens;
    names.insert("");
    for (const Finding& finding : sorted.open) names.insert(finding.screen);
    std::string cases;
    std::size_t failed = 0;
    for (const std::string& name : names) {
        std::string lines;
        for (const Finding& finding : sorted.open) {
            if (finding.screen == name) lines += lineOf(finding) + "\n";
        }
        cases += "  <testcase classname=\"check\" name=\"" + escaped(titleOfScreen(name)) + "\"";
        if (lines.empty()) {
            cases += "/>\n";
            continue;
        }
        ++failed;
        cases += ">\n    <failure message=\"" + escaped(lines.substr(0, lines.find('\n'))) + "\">";
        for (std::size_t at = 0; at < lines.size();) {
            const std::size_t end = lines.find('\n', at);
            cases += escaped(lines.substr(at, end - at)) + "\n";
            at = end + 1;
        }
        cases += "</failure>\n  </testcase>\n";
    }
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuite name=\"check\" tests=\"" +
           std::to_string(names.size()) + "\" failures=\"" + std::to_string(failed) + "\">\n" + cases +
           "</testsuite>\n";
}

}  // namespace settings
