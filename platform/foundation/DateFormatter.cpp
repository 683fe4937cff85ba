// SPDX-License-Identifier: MIT
#include "platform/foundation/DateFormatter.h"

#include <algorithm>
#include <array>
#include <vector>

#include "platform/foundation/Calendar.h"

namespace platform {

namespace {

constexpr std::string_view fieldLetters = "hHmsayMd";
// What keyboards and other systems put before AM and PM: besides the blank, the no-break ones, narrow
// included.
constexpr std::array<std::string_view, 4> blanks{" ", "\t", "\xC2\xA0", "\xE2\x80\xAF"};

/// One field of a pattern, or a piece of literal text (letter 0).
struct Item {
    char letter = 0;
    std::size_t width = 0;
    std::string literal;
};

void appendLiteral(std::vector<Item>& items, char character) {
    if (items.empty() || items.back().letter != 0) items.emplace_back();
    items.back().literal += character;
}

std::vector<Item> itemsOf(std::string_view pattern) {
    std::vector<Item> items;
    bool quoted = false;
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        const char character = pattern[i];
        if (character == '\'') {
            if (i + 1 < pattern.size() && pattern[i + 1] == '\'') {
                appendLiteral(items, '\'');
                ++i;
            } else {
                quoted = !quoted;
            }
        } else if (quoted || fieldLetters.find(character) == std::string_view::npos) {
            appendLiteral(items, character);
        } else {
            const std::size_t end = std::min(pattern.find_first_not_of(character, i), pattern.size());
            items.push_back(Item{character, end - i, {}});
            i = end - 1;
        }
    }
    return items;
}

bool removeBlank(std::string_view& text) {
    for (const std::string_view blank : blanks) {
        if (!text.starts_with(blank)) continue;
        text.remove_prefix(blank.size());
        return true;
    }
    return false;
}

bool isBlankLiteral(const Item& item) {
    return item.letter == 0 && item.literal.find_first_not_of(' ') == item.literal.npos;
}

/// Reads the items' texts one after the other from the front of a text.
class Reader {
  public:
    explicit Reader(std::string_view text) : rest_(text) {}

    bool read(const std::vector<Item>& items) {
        for (std::size_t i = 0; i < items.size(); ++i) {
            const Item& item = items[i];
            const bool besideHalf =
                (i > 0 && items[i - 1].letter == 'a') || (i + 1 < items.size() && items[i + 1].letter == 'a');
            if (isBlankLiteral(item) && besideHalf)
                continue;  // the half of the day takes blanks as they come
            if (!readItem(item)) return false;
        }
        return rest_.empty();
    }

    std::optional<Date> date() const {
        DateComponents parts = parts_;
        if (hour12_) parts.hour = *hour12_ % 12;
        if (isAfternoon_ && !hour24_) parts.hour += *isAfternoon_ && parts.hour < 12 ? 12 : 0;
        if (hour24_) parts.hour = *hour24_;
        const Calendar calendar;
        const Date result = calendar.dateFromComponents(parts);
        // A day that its month does not have (the 30th of February) comes back as another one.
        const DateComponents back = calendar.components_fromDate(CalendarUnitMonth | CalendarUnitDay, result);
        if (parts.day != 0 && (back.day != parts.day || (parts.month != 0 && back.month != parts.month))) {
            return std::nullopt;
        }
        return result;
    }

  private:
    bool readItem(const Item& item) {
        switch (item.letter) {
            case 0:
                if (!rest_.starts_with(item.literal)) return false;
                rest_.remove_prefix(item.literal.size());
                return true;
            case 'a':
                return readHalf();
            case 'h':
                return readNumber(hour12_, 2, 1, 12);
            case 'H':
                return readNumber(hour24_, 2, 0, 23);
            case 'm':
                return readNumber(parts_.minute, 2, 0, 59);
            case 's':
                return readNumber(parts_.second, 2, 0, 59);
            case 'y':
                return readNumber(parts_.year, 4, 1, 9999);
            case 'M':
                return readNumber(parts_.month, 2, 1, 12);
            default:
                return readNumber(parts_.day, 2, 1, 31);
        }
    }

    bool readHalf() {
        while (removeBlank(rest_)) continue;
        if (rest_.size() < 2 || (rest_[1] != 'M' && rest_[1] != 'm')) return false;
        const char first = rest_[0];
        if (first != 'A' && first != 'a' && first != 'P' && first != 'p') return false;
        isAfternoon_ = first == 'P' || first == 'p';
        rest_.remove_prefix(2);
        while (removeBlank(rest_)) continue;
        return true;
    }

    template <class Target>
    bool readNumber(Target& target, std::size_t mostDigits, std::int64_t least, std::int64_t most) {
        std::int64_t number = 0;
        std::size_t digits = 0;
        while (digits < mostDigits && digits < rest_.size() && rest_[digits] >= '0' && rest_[digits] <= '9') {
            number = number * 10 + (rest_[digits++] - '0');
        }
        if (digits == 0 || number < least || number > most) return false;
        rest_.remove_prefix(digits);
        target = number;
        return true;
    }

    std::string_view rest_;
    DateComponents parts_;
    std::optional<std::int64_t> hour12_;
    std::optional<std::int64_t> hour24_;
    std::optional<bool> isAfternoon_;
};

std::string padded(std::int64_t number, std::size_t width) {
    std::string text = std::to_string(number);
    if (text.size() < width) text.insert(0, width - text.size(), '0');
    return text;
}

std::int64_t fieldOf(const DateComponents& parts, char letter) {
    switch (letter) {
        case 'h':
            return parts.hour % 12 == 0 ? 12 : parts.hour % 12;
        case 'H':
            return parts.hour;
        case 'm':
            return parts.minute;
        case 's':
            return parts.second;
        case 'y':
            return parts.year;
        case 'M':
            return parts.month;
        default:
            return parts.day;
    }
}

}  // namespace

std::string DateFormatter::stringFromDate(Date date) const {
    constexpr std::uint64_t allUnits = CalendarUnitYear | CalendarUnitMonth | CalendarUnitDay |
                                       CalendarUnitHour | CalendarUnitMinute | CalendarUnitSecond;
    const DateComponents parts = Calendar::currentCalendar().components_fromDate(allUnits, date);
    if (parts.month == 0) return {};
    std::string text;
    for (const Item& item : itemsOf(pattern_)) {
        if (item.letter == 0) {
            text += item.literal;
        } else if (item.letter == 'a') {
            text += parts.hour < 12 ? "AM" : "PM";
        } else {
            text += padded(fieldOf(parts, item.letter), item.width);
        }
    }
    return text;
}

std::optional<Date> DateFormatter::dateFromString(std::string_view text) const {
    Reader reader(text);
    if (!reader.read(itemsOf(pattern_))) return std::nullopt;
    return reader.date();
}

}  // namespace platform
