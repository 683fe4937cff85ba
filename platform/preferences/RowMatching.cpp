// SPDX-License-Identifier: MIT
#include "platform/preferences/RowMatching.h"

#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <limits>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "platform/foundation/KeyValueCoding.h"

namespace platform {

namespace {

std::atomic<RowKey> lastKey{0};

RowKey nextKey() {
    return ++lastKey;
}

/// Stands for the user info of a row of another process.
class RememberedUserInfo : public Object {
  public:
    explicit RememberedUserInfo(std::string line) : line_(std::move(line)) {}
    const std::string& line() const { return line_; }

  private:
    std::string line_;
};

/// With its length ahead, so that no two sequences of texts look alike.
void appendText(std::string& line, std::string_view text) {
    line += std::to_string(text.size());
    line += ':';
    line += text;
}

bool isContainer(const Value& value) {
    return value.type() == ValueType::Array || value.type() == ValueType::Dictionary;
}

void appendEntry(std::string& line, const Value& value);

void appendObject(std::string& line, const Object& object) {
    const auto* properties = dynamic_cast<const KeyValueCoding*>(&object);
    const Value identifier = properties != nullptr ? properties->valueForKey("identifier") : Value();
    if (identifier.isNil() || isContainer(identifier) || identifier.object() || identifier == Value("")) {
        // Both generations of rows live while they are compared, so that no address stands for two objects;
        // another process may have another object there.
        static const pid_t process = getpid();
        line += '@' + std::to_string(process) + ':';
        line += std::to_string(reinterpret_cast<std::uintptr_t>(&object));
        return;
    }
    appendText(line, object.getClass().name());
    appendEntry(line, identifier);
}

/// What is in a container's container does not count: it is content, as the list of all calendars that a row
/// hands to its screen, and says nothing of which row it is.
void appendEntry(std::string& line, const Value& value) {
    line += std::to_string(std::to_underlying(value.type()));
    line += '=';
    if (const auto object = value.object()) {
        appendObject(line, *object);
    } else if (const std::string* text = value.string()) {
        appendText(line, *text);
    } else if (!isContainer(value)) {
        appendText(line, value.description());
    }
}

std::string userInfoLine(const Value& userInfo) {
    if (const auto object = userInfo.object()) {
        if (const auto* remembered = dynamic_cast<const RememberedUserInfo*>(object.get()))
            return remembered->line();
    }
    std::string line;
    appendEntry(line, userInfo);
    if (const Array* array = userInfo.array()) {
        for (const Value& entry : *array) appendEntry(line, entry);
    }
    if (const Dictionary* dictionary = userInfo.dictionary()) {
        for (const auto& [key, entry] : *dictionary) {
            appendText(line, key);
            appendEntry(line, entry);
        }
    }
    return line;
}

/// Equal texts as equal numbers.
class Numbers {
  public:
    void expect(std::size_t texts) { numbers_.reserve(texts); }
    std::size_t of(std::string text) {
        return numbers_.try_emplace(std::move(text), numbers_.size()).first->second;
    }
    std::size_t count() const { return numbers_.size(); }

  private:
    std::unordered_map<std::string, std::size_t> numbers_;
};

constexpr std::size_t none = std::numeric_limits<std::size_t>::max();

/// Earlier rows by what they have in common. They are added last to first and given away first to last.
template <class Common, class Hash = std::hash<Common>>
class Candidates {
  public:
    explicit Candidates(std::size_t rows) : next_(rows, none) {}

    void add(const Common& common, std::size_t row) {
        const auto [first, isNew] = first_.try_emplace(common, row);
        if (!isNew) next_[row] = std::exchange(first->second, row);
    }
    /// The first that is not taken yet; none without one.
    std::size_t first(const Common& common, const std::vector<bool>& taken) {
        const auto first = first_.find(common);
        if (first == first_.end()) return none;
        while (first->second != none && taken[first->second]) first->second = next_[first->second];
        return first->second;
    }

  private:
    std::unordered_map<Common, std::size_t, Hash> first_;
    std::vector<std::size_t> next_;
};

/// A row as it is told from others: numbers for what it is, and for that with its name.
struct Likeness {
    /// None for a hole in the list.
    std::size_t kind = none;
    /// None unless the name is asked for.
    std::size_t named = none;
    /// Whether it has more than its name to be known by.
    bool isIdentified = false;
};

/// A named row in the section of the group with that key: 0 for group rows, and ahead of the first group.
struct Place {
    std::size_t named;
    RowKey section;

    bool operator==(const Place&) const = default;
};

struct PlaceHash {
    std::size_t operator()(const Place& place) const {
        return std::hash<std::size_t>{}(place.named) * 31 + std::hash<RowKey>{}(place.section);
    }
};

/// Finds the rows of before among those of now.
class RowMatching {
  public:
    RowMatching(std::span<const KeyedRow> before, std::span<KeyedRow> now)
        : before_(before), now_(now), taken_(before.size(), false) {}

    void matchSpecifiers();
    /// Does nothing unless rows of before and of now are left.
    void matchLikeRows();

  private:
    void give(std::size_t before, KeyedRow& row) {
        taken_[before] = true;
        row.key = before_[before].key;
    }
    static bool isGroup(const KeyedRow& row) { return row.specifier && row.specifier->isGroup(); }
    Likeness likenessOf(const PSSpecifier& specifier);
    std::vector<Likeness> likenesses(std::span<const KeyedRow> rows);
    void matchTheOnlyOfTheirKind(const std::vector<Likeness>& before, const std::vector<Likeness>& now);
    void nameRow(const KeyedRow& row, Likeness& likeness);
    void matchWithinSections(const std::vector<Likeness>& before, const std::vector<Likeness>& now);
    void matchWhatIsLeft(const std::vector<Likeness>& before, const std::vector<Likeness>& now);

    std::span<const KeyedRow> before_;
    std::span<KeyedRow> now_;
    std::vector<bool> taken_;
    Numbers kinds_;
    Numbers names_;
};

void RowMatching::matchSpecifiers() {
    const std::size_t shorter = std::min(before_.size(), now_.size());
    std::size_t ahead = 0;
    for (; ahead < shorter && before_[ahead].specifier == now_[ahead].specifier; ++ahead)
        give(ahead, now_[ahead]);
    std::size_t behind = 0;
    for (; behind < shorter - ahead; ++behind) {
        const std::size_t row = before_.size() - 1 - behind;
        KeyedRow& same = now_[now_.size() - 1 - behind];
        if (before_[row].specifier != same.specifier) break;
        give(row, same);
    }
    Candidates<const PSSpecifier*> candidates(before_.size());
    for (std::size_t row = before_.size() - behind; row-- > ahead;) {
        if (before_[row].specifier) candidates.add(before_[row].specifier.get(), row);
    }
    for (KeyedRow& row : now_.subspan(ahead, now_.size() - behind - ahead)) {
        const std::size_t same = candidates.first(row.specifier.get(), taken_);
        if (same != none) give(same, row);
    }
}

Likeness RowMatching::likenessOf(const PSSpecifier& specifier) {
    std::string line = std::to_string(std::to_underlying(specifier.cellType()));
    line += specifier.identifier() ? '+' : '-';
    appendText(line, specifier.identifier().value_or(""));
    line += userInfoLine(specifier.userInfo());
    Likeness likeness;
    likeness.isIdentified = specifier.identifier().has_value() || !specifier.userInfo().isNil();
    likeness.kind = kinds_.of(std::move(line));
    return likeness;
}

void RowMatching::nameRow(const KeyedRow& row, Likeness& likeness) {
    if (likeness.kind == none) return;
    std::string line = std::to_string(likeness.kind);
    line += row.specifier->name() ? '+' : '-';
    likeness.named = names_.of(line + row.specifier->name().value_or(""));
}

std::vector<Likeness> RowMatching::likenesses(std::span<const KeyedRow> rows) {
    std::vector<Likeness> all;
    all.reserve(rows.size());
    for (const KeyedRow& row : rows) all.push_back(row.specifier ? likenessOf(*row.specifier) : Likeness{});
    return all;
}

void RowMatching::matchLikeRows() {
    const auto isNew = [](const KeyedRow& row) { return row.key == 0; };
    if (std::ranges::find(taken_, false) == taken_.end() || std::ranges::none_of(now_, isNew)) return;
    kinds_.expect(before_.size() + now_.size());
    std::vector<Likeness> before = likenesses(before_);
    std::vector<Likeness> now = likenesses(now_);
    matchTheOnlyOfTheirKind(before, now);
    for (std::size_t row = 0; row < before.size(); ++row) {
        if (!taken_[row]) nameRow(before_[row], before[row]);
    }
    for (std::size_t row = 0; row < now.size(); ++row) {
        if (isNew(now_[row])) nameRow(now_[row], now[row]);
    }
    matchWithinSections(before, now);
    matchWhatIsLeft(before, now);
}

void RowMatching::matchTheOnlyOfTheirKind(const std::vector<Likeness>& before,
                                          const std::vector<Likeness>& now) {
    constexpr std::size_t several = none - 1;
    std::vector<std::size_t> only(kinds_.count(), none);
    std::vector<std::size_t> counted(kinds_.count(), 0);
    for (std::size_t row = 0; row < before.size(); ++row) {
        if (before[row].kind == none) continue;
        std::size_t& place = only[before[row].kind];
        place = place == none ? row : several;
    }
    for (const Likeness& likeness : now) {
        if (likeness.kind != none) ++counted[likeness.kind];
    }
    for (std::size_t row = 0; row < now.size(); ++row) {
        const Likeness& likeness = now[row];
        if (now_[row].key != 0 || !likeness.isIdentified || counted[likeness.kind] > 1) continue;
        const std::size_t same = only[likeness.kind];
        if (same < several && !taken_[same]) give(same, now_[row]);
    }
}

void RowMatching::matchWithinSections(const std::vector<Likeness>& before, const std::vector<Likeness>& now) {
    std::vector<Place> places;
    places.reserve(before.size());
    RowKey section = 0;
    for (std::size_t row = 0; row < before.size(); ++row) {
        if (isGroup(before_[row])) section = before_[row].key;
        places.push_back({before[row].named, isGroup(before_[row]) ? 0 : section});
    }
    Candidates<Place, PlaceHash> candidates(before.size());
    for (std::size_t row = before.size(); row-- > 0;) {
        if (before[row].named != none) candidates.add(places[row], row);
    }
    section = 0;
    for (std::size_t index = 0; index < now.size(); ++index) {
        KeyedRow& row = now_[index];
        if (row.key == 0 && now[index].named != none) {
            const std::size_t same = candidates.first({now[index].named, isGroup(row) ? 0 : section}, taken_);
            if (same != none) give(same, row);
        }
        if (!isGroup(row)) continue;
        // A group that was not found here is new; the rows behind it are looked for in its section.
        if (row.key == 0) row.key = nextKey();
        section = row.key;
    }
}

void RowMatching::matchWhatIsLeft(const std::vector<Likeness>& before, const std::vector<Likeness>& now) {
    Candidates<std::size_t> candidates(before.size());
    for (std::size_t row = before.size(); row-- > 0;) {
        if (before[row].named != none && !taken_[row]) candidates.add(before[row].named, row);
    }
    for (std::size_t index = 0; index < now.size(); ++index) {
        if (now_[index].key != 0 || now[index].named == none) continue;
        const std::size_t same = candidates.first(now[index].named, taken_);
        if (same != none) give(same, now_[index]);
    }
}

}  // namespace

void keyRows(std::span<const KeyedRow> before, std::span<KeyedRow> now) {
    RowMatching matching(before, now);
    matching.matchSpecifiers();
    matching.matchLikeRows();
    for (KeyedRow& row : now) {
        if (row.key == 0) row.key = nextKey();
    }
}

RowTraits traitsOf(const KeyedRow& row) {
    const PSSpecifier& specifier = *row.specifier;
    RowTraits traits{row.key, specifier.cellType(), specifier.name(), specifier.identifier(), {}};
    if (!specifier.userInfo().isNil()) traits.userInfo = userInfoLine(specifier.userInfo());
    return traits;
}

KeyedRow rowWithTraits(const RowTraits& traits) {
    auto specifier = std::make_shared<PSSpecifier>();
    specifier->setName(traits.name);
    specifier->setIdentifier(traits.identifier);
    specifier->setCellType(traits.kind);
    if (!traits.userInfo.empty())
        specifier->setUserInfo(std::make_shared<RememberedUserInfo>(traits.userInfo));
    return {std::move(specifier), traits.key};
}

RowKey lastRowKey() {
    return lastKey;
}

void rowKeysAbove(RowKey key) {
    RowKey last = lastKey;
    while (last < key && !lastKey.compare_exchange_weak(last, key)) continue;
}

}  // namespace platform
