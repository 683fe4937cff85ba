// SPDX-License-Identifier: MIT
#include "settings/watching/BuildErrors.h"

#include <charconv>
#include <regex>
#include <utility>
#include <vector>

namespace settings {

namespace {

/// Longer lines are command lines or data, and no errors; the expressions would recurse as deep as they are
/// long.
constexpr std::size_t longestLine = 2000;

/// Without the sequences that colour a terminal.
std::string plain(std::string_view line) {
    std::string text;
    for (std::size_t at = 0; at < line.size(); ++at) {
        if (line[at] == '\033' && at + 1 < line.size() && line[at + 1] == '[') {
            for (at += 2; at < line.size() && (line[at] < '@' || line[at] > '~');) ++at;
        } else if (line[at] != '\r') {
            text += line[at];
        }
    }
    return text;
}

std::vector<std::string> linesOf(std::string_view output) {
    std::vector<std::string> lines;
    while (!output.empty()) {
        const std::size_t end = output.find('\n');
        if (end != 0 && (end == std::string_view::npos ? output.size() : end) <= longestLine)
            lines.push_back(plain(output.substr(0, end)));
        if (end == std::string_view::npos) break;
        output.remove_prefix(end + 1);
    }
    return lines;
}

int number(const std::string& digits) {
    int value = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), value);
    return value;
}

std::string trimmed(const std::string& text) {
    const auto begin = text.find_first_not_of(" \t");
    return begin == std::string::npos ? "" : text.substr(begin, text.find_last_not_of(" \t") - begin + 1);
}

/// "FILE:LINE:COLUMN: error: TEXT", "FILE(LINE,COLUMN): error TEXT".
std::optional<BuildError> compilerError(const std::string& line) {
    static const std::regex withColons(R"(^(.+?):(\d+):(?:(\d+):)? (?:fatal )?error: (.+)$)");
    static const std::regex withBrackets(R"(^(.+?)\((\d+),(\d+)\): error (.+)$)");
    std::smatch match;
    if (!std::regex_match(line, match, withColons) && !std::regex_match(line, match, withBrackets))
        return std::nullopt;
    return BuildError{match[1], number(match[2]), number(match[3]), match[4]};
}

std::optional<BuildError> linkerError(const std::string& line) {
    static const std::regex form(
        R"(^(?:\S*ld\S*: )?(?:\S+\.o: in function .*: *)?(.+?):(?:(\d+)|\([^)]*\)): ((?:undefined reference to|multiple definition of) .+)$)");
    std::smatch match;
    if (!std::regex_match(line, match, form)) return std::nullopt;
    return BuildError{match[1], number(match[2]), 0, match[3]};
}

/// The text stands on the lines behind it.
std::optional<BuildError> configurationError(const std::vector<std::string>& lines, std::size_t at) {
    static const std::regex form(R"(^CMake Error(?: at (.+?):(\d+) .*| in (.+?))?:(.*)$)");
    std::smatch match;
    if (!std::regex_match(lines[at], match, form)) return std::nullopt;
    BuildError error{match[1].matched ? match[1] : match[3], number(match[2]), 0, trimmed(match[4])};
    for (std::size_t next = at + 1; error.text.empty() && next < lines.size(); ++next)
        error.text = trimmed(lines[next]);
    return error;
}

/// The place stands on a line behind it.
std::optional<BuildError> pageError(const std::vector<std::string>& lines, std::size_t at) {
    static const std::regex form(R"(^.*\[ERROR\] (.+)$)");
    static const std::regex place(R"(^\s+(.+?):(\d+):(\d+):$)");
    std::smatch match;
    if (!std::regex_match(lines[at], match, form)) return std::nullopt;
    BuildError error{"", 0, 0, match[1]};
    constexpr std::size_t near = 4;
    for (std::size_t next = at + 1; next < lines.size() && next < at + near; ++next) {
        if (!std::regex_match(lines[next], match, place)) continue;
        error.file = match[1];
        error.line = number(match[2]);
        error.column = number(match[3]);
        break;
    }
    return error;
}

std::optional<BuildError> otherError(const std::string& line) {
    static const std::regex form(R"(^(?:([^\s:]+): )?(?:fatal )?error: (.+)$)", std::regex::icase);
    std::smatch match;
    if (!std::regex_match(line, match, form)) return std::nullopt;
    return BuildError{"", 0, 0, (match[1].matched ? match[1].str() + ": " : "") + match[2].str()};
}

}  // namespace

std::optional<BuildError> firstErrorIn(std::string_view output) {
    const auto lines = linesOf(output);
    std::optional<BuildError> vague;
    for (std::size_t at = 0; at < lines.size(); ++at) {
        for (auto error : {compilerError(lines[at]), linkerError(lines[at]), configurationError(lines, at),
                           pageError(lines, at)}) {
            if (error) return error;
        }
        if (!vague) vague = otherError(lines[at]);
    }
    return vague;
}

std::string lastLineOf(std::string_view output) {
    const auto lines = linesOf(output);
    for (auto line = lines.rbegin(); line != lines.rend(); ++line) {
        if (std::string text = trimmed(*line); !text.empty()) return text;
    }
    return {};
}

}  // namespace settings
