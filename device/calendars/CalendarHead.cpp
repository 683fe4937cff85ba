// SPDX-License-Identifier: MIT
#include "device/calendars/CalendarHead.h"

#include <libical/ical.h>

#include <algorithm>
#include <array>
#include <memory>

namespace device {

namespace {

constexpr std::string_view calendarBegin = "BEGIN:VCALENDAR";

/// The best first: the standard's name, and the colour that is exact rather than the nearest one with a name.
constexpr std::array<std::string_view, 2> nameProperties{"NAME", "X-WR-CALNAME"};
constexpr std::array<std::string_view, 2> colourProperties{"X-APPLE-CALENDAR-COLOR", "COLOR"};

bool sameLetters(std::string_view left, std::string_view right) {
    return std::ranges::equal(left, right, [](char a, char b) {
        const auto capital = [](char c) {
            return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
        };
        return capital(a) == capital(b);
    });
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

/// A calendar of nothing but the properties wanted, so that the library is given no other part of a file that
/// anybody may have written.
std::string calendarOfWantedProperties(std::string_view text) {
    std::string calendar(calendarBegin);
    calendar += "\r\n";
    bool wanted = false;
    while (!text.empty()) {
        const std::string_view line = takeLine(text);
        const bool continues = line.starts_with(' ') || line.starts_with('\t');
        if (!continues) {
            const std::string_view name = line.substr(0, line.find_first_of(":;"));
            if (isOneOf(name, std::array<std::string_view, 2>{"BEGIN", "END"})) break;
            wanted = isOneOf(name, nameProperties) || isOneOf(name, colourProperties);
        }
        if (wanted) calendar.append(line).append("\r\n");
    }
    return calendar + "END:VCALENDAR\r\n";
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

std::optional<std::string> textOfFirst(icalcomponent* calendar,
                                       const std::array<std::string_view, 2>& names) {
    for (const std::string_view name : names) {
        for (icalproperty* property = icalcomponent_get_first_property(calendar, ICAL_ANY_PROPERTY); property;
             property = icalcomponent_get_next_property(calendar, ICAL_ANY_PROPERTY)) {
            const char* own = icalproperty_get_property_name(property);
            if (!own || !sameLetters(own, name) || !hasText(property)) continue;
            if (const char* text = textOf(property)) return text;
        }
    }
    return std::nullopt;
}

}  // namespace

platform::Result<CalendarHead> CalendarHead::parse(std::string_view text) {
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (text.size() >= maximumSize) text = text.substr(0, text.rfind('\n', maximumSize) + 1);
    if (text.contains('\0')) return platform::failure("holds a null character");
    if (text.starts_with(byteOrderMark)) text.remove_prefix(byteOrderMark.size());
    std::string_view first;
    while (first.empty() && !text.empty()) first = withoutTrailingBlanks(takeLine(text));
    if (!sameLetters(first, calendarBegin)) return platform::failure("does not begin with BEGIN:VCALENDAR");

    const std::unique_ptr<icalcomponent, void (*)(icalcomponent*)> calendar(
        icalparser_parse_string(calendarOfWantedProperties(text).c_str()), icalcomponent_free);
    if (!calendar) return platform::failure("is no iCalendar file");
    return CalendarHead{textOfFirst(calendar.get(), nameProperties),
                        textOfFirst(calendar.get(), colourProperties)};
}

}  // namespace device
