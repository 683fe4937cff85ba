// SPDX-License-Identifier: MIT
#include "device/calendars/CalendarHead.h"

#include <libical/ical.h>

#include <algorithm>
#include <array>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "device/calendars/ColourText.h"

namespace device {

namespace {

constexpr std::string_view calendarBegin = "BEGIN:VCALENDAR";
constexpr std::string_view calendarEnd = "END:VCALENDAR";
/// What follows a property's name: its value, or its parameters.
constexpr std::string_view nameEnds = ":;";

/// The best first: the standard's name, and the colour that is exact rather than the nearest one with a name.
constexpr std::array<std::string_view, 2> nameProperties{"NAME", "X-WR-CALNAME"};
constexpr std::array<std::string_view, 2> colourProperties{"X-APPLE-CALENDAR-COLOR", "COLOR"};

char capital(char letter) {
    return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
}

bool sameLetters(std::string_view left, std::string_view right) {
    return std::ranges::equal(left, right, {}, capital, capital);
}

std::string inCapitals(std::string_view name) {
    std::string capitals(name);
    std::ranges::transform(capitals, capitals.begin(), capital);
    return capitals;
}

template <std::size_t count>
bool isOneOf(std::string_view name, const std::array<std::string_view, count>& names) {
    return std::ranges::any_of(names, [&](std::string_view other) { return sameLetters(name, other); });
}

std::string_view takeLine(std::string_view& text) {
    const std::size_t end = text.find('\n');
    std::string_view line = text.substr(0, end);
    text = end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
    while (line.ends_with('\r')) line.remove_suffix(1);
    return line;
}

std::string_view withoutTrailingBlanks(std::string_view line) {
    while (line.ends_with(' ') || line.ends_with('\t')) line.remove_suffix(1);
    return line;
}

bool continuesALine(std::string_view text) {
    return text.starts_with(' ') || text.starts_with('\t');
}

/// The line with as much of what continues it as its name takes, which is taken off `rest`: a line may be
/// folded anywhere. A blank line has no name.
std::string takeWholeName(std::string_view line, std::string_view& rest) {
    std::string whole(line);
    while (!whole.empty() && whole.find_first_of(nameEnds) == std::string::npos && continuesALine(rest))
        whole.append(takeLine(rest).substr(1));
    return whole;
}

/// The name at the beginning of a property's line; empty for a line that is none. The standard has no
/// underscores, but some programs do.
std::string_view propertyName(std::string_view line) {
    const std::size_t end = line.find_first_of(nameEnds);
    const std::string_view name = line.substr(0, end);
    const bool isName = end != std::string_view::npos && std::ranges::all_of(name, [](char c) {
                            return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
                                   (c >= '0' && c <= '9') || c == '-' || c == '_';
                        });
    return isName ? name : std::string_view();
}

/// A calendar of nothing but the properties wanted of those that stand in `text` from `position` on, so that
/// the library is given no other part of a file that anybody may have written.
platform::Result<std::string> calendarOfWantedProperties(std::string_view text, std::size_t position) {
    std::string calendar(calendarBegin);
    calendar += "\r\n";
    bool wanted = false;
    for (std::string_view rest = text.substr(position); !rest.empty();) {
        const std::size_t start = text.size() - rest.size();
        const std::string_view line = takeLine(rest);
        if (continuesALine(line)) {
            if (wanted) calendar.append(line).append("\r\n");
        } else {
            const std::string whole = takeWholeName(line, rest);
            const std::string_view name = propertyName(whole);
            if (name.empty() && !whole.empty()) {
                const auto number = std::ranges::count(text.substr(0, start), '\n') + 1;
                return platform::failure("is no iCalendar file: its line " + std::to_string(number) +
                                         " is no property");
            }
            if (isOneOf(name, std::array<std::string_view, 2>{"BEGIN", "END"})) break;
            wanted = isOneOf(name, nameProperties) || isOneOf(name, colourProperties);
            // The library knows an extension by its capitals only.
            if (wanted) calendar.append(inCapitals(name)).append(whole, name.size()).append("\r\n");
        }
    }
    return calendar.append(calendarEnd).append("\r\n");
}

/// With and without VALUE=TEXT, an extension's value comes as one kind or another.
const char* textOf(const icalproperty* property) {
    const icalvalue* value = icalproperty_get_value(property);
    if (!value) return nullptr;
    return icalvalue_isa(value) == ICAL_X_VALUE ? icalvalue_get_x(value) : icalvalue_get_text(value);
}

bool hasText(const icalproperty* property) {
    const icalvalue* value = icalproperty_get_value(property);
    return value && (icalvalue_isa(value) == ICAL_X_VALUE || icalvalue_isa(value) == ICAL_TEXT_VALUE);
}

/// In the order of the names.
std::vector<std::string> textsOf(icalcomponent* calendar, const std::array<std::string_view, 2>& names) {
    std::vector<std::string> texts;
    for (const std::string_view name : names) {
        for (icalproperty* property = icalcomponent_get_first_property(calendar, ICAL_ANY_PROPERTY); property;
             property = icalcomponent_get_next_property(calendar, ICAL_ANY_PROPERTY)) {
            const char* own = icalproperty_get_property_name(property);
            if (!own || !sameLetters(own, name) || !hasText(property)) continue;
            if (const char* text = textOf(property)) texts.emplace_back(text);
        }
    }
    return texts;
}

std::optional<std::string> firstOf(const std::vector<std::string>& texts) {
    return texts.empty() ? std::nullopt : std::optional(texts.front());
}

std::optional<std::string> firstColourOf(const std::vector<std::string>& texts) {
    const auto colour =
        std::ranges::find_if(texts, [](const std::string& text) { return colourFromText(text).has_value(); });
    return colour == texts.end() ? firstOf(texts) : std::optional(*colour);
}

}  // namespace

platform::Result<CalendarHead> CalendarHead::parse(std::string_view text) {
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (text.size() >= maximumSize) text = text.substr(0, text.rfind('\n', maximumSize) + 1);
    if (text.contains('\0')) return platform::failure("holds a null character");
    if (text.starts_with(byteOrderMark)) text.remove_prefix(byteOrderMark.size());
    std::string_view first;
    std::string_view rest = text;
    while (first.empty() && !rest.empty()) first = withoutTrailingBlanks(takeLine(rest));
    if (!sameLetters(first, calendarBegin)) return platform::failure("does not begin with BEGIN:VCALENDAR");

    const auto wanted = calendarOfWantedProperties(text, text.size() - rest.size());
    if (!wanted) return std::unexpected(wanted.error());
    const std::unique_ptr<icalcomponent, void (*)(icalcomponent*)> calendar(
        icalparser_parse_string(wanted->c_str()), icalcomponent_free);
    if (!calendar) return platform::failure("is no iCalendar file");
    return CalendarHead{firstOf(textsOf(calendar.get(), nameProperties)),
                        firstColourOf(textsOf(calendar.get(), colourProperties))};
}

bool CalendarHead::isTailOfWholeFile(std::string_view text) {
    text = text.substr(text.size() - std::min(text.size(), tailSize));
    text = text.substr(0, text.find_last_not_of(" \t\r\n\v\f") + 1);
    const std::size_t lineBreak = text.find_last_of("\r\n");
    return lineBreak != std::string_view::npos && sameLetters(text.substr(lineBreak + 1), calendarEnd);
}

}  // namespace device
