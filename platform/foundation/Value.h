// SPDX-License-Identifier: MIT
#pragma once

#include <bit>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "platform/foundation/Shared.h"

namespace platform {

class Object;
class Value;

/// The kinds of values. Declared before the types of the same names, which it would otherwise shadow.
enum class ValueType { Nil, Boolean, Integer, Real, String, Date, Data, Array, Dictionary, Object };

class Dictionary;
using Array = std::vector<Value>;
using Data = std::vector<std::uint8_t>;

/// An instant: seconds since 2001-01-01 00:00:00 UTC, as property lists store it.
struct Date {
    double secondsSinceReference = 0.0;

    auto operator<=>(const Date&) const = default;
};

/// What travels through rows, property lists and key-value access. A boolean is never silently an integer:
/// `Value(true) != Value(1)`, and `integer()` of a boolean is empty.
///
/// Values are immutable once made: copies share strings, data, arrays and dictionaries, so copying a large
/// tree is cheap and reading it from several threads is safe. To change a container, copy it out
/// (`Dictionary d = *v.dictionary();`), change the copy, and make a new Value of it.
class Value {
  public:
    using Type = ValueType;

    Value() = default;
    Value(std::nullptr_t) {}
    Value(const Value& other) : kind_(other.kind_), bits_(other.bits_) {
        if (isShared()) owners().add();
    }
    Value(Value&& other) noexcept
        : kind_(std::exchange(other.kind_, Kind::Nil)), bits_(std::exchange(other.bits_, 0)) {}
    Value& operator=(Value other) noexcept {
        std::swap(kind_, other.kind_);
        std::swap(bits_, other.bits_);
        return *this;
    }
    ~Value() {
        if (isShared() && owners().remove()) destroy();
    }
    Value(std::same_as<bool> auto boolean) : kind_(Kind::Boolean), bits_(boolean ? 1 : 0) {}
    /// Integers of every width; above the range of int64_t they are kept as unsigned.
    template <std::integral T>
        requires(!std::same_as<T, bool>)
    Value(T integer)
        // One form for each number, so that equal integers are equal values whatever type they came from.
        : kind_(isLarge(integer) ? Kind::LargeInteger : Kind::Integer),
          bits_(static_cast<std::uint64_t>(integer)) {}
    Value(std::floating_point auto real)
        : kind_(Kind::Real), bits_(std::bit_cast<std::uint64_t>(static_cast<double>(real))) {}
    /// A null pointer gives nil.
    Value(const char* text);
    Value(std::string text);
    Value(std::string_view text);
    Value(platform::Date date)
        : kind_(Kind::Date), bits_(std::bit_cast<std::uint64_t>(date.secondsSinceReference)) {}
    Value(platform::Data data);
    Value(platform::Array array);
    Value(platform::Dictionary dictionary);
    /// An empty pointer gives nil.
    template <std::derived_from<platform::Object> T>
    Value(std::shared_ptr<T> object) {
        if (object) share<std::shared_ptr<platform::Object>>(Kind::Object, std::move(object));
    }

    Type type() const;
    bool isNil() const { return kind_ == Kind::Nil; }
    explicit operator bool() const { return !isNil(); }

    /// Each accessor answers only for its own type; any other type gives the empty optional or null.
    /// The pointers stay valid as long as some copy of this value lives.
    std::optional<bool> boolean() const { return valueIf<bool>(Kind::Boolean, bits_ != 0); }
    std::optional<std::int64_t> integer() const {
        return valueIf<std::int64_t>(Kind::Integer, static_cast<std::int64_t>(bits_));
    }
    /// Any integer that is not negative, the ones above int64_t included.
    std::optional<std::uint64_t> unsignedInteger() const;
    std::optional<double> real() const { return valueIf<double>(Kind::Real, std::bit_cast<double>(bits_)); }
    const std::string* string() const { return contentIf<std::string>(Kind::String); }
    std::optional<platform::Date> date() const {
        return valueIf<platform::Date>(Kind::Date, platform::Date{std::bit_cast<double>(bits_)});
    }
    const platform::Data* data() const { return contentIf<platform::Data>(Kind::Bytes); }
    const platform::Array* array() const { return contentIf<platform::Array>(Kind::Elements); }
    const platform::Dictionary* dictionary() const {
        return contentIf<platform::Dictionary>(Kind::Dictionary);
    }
    std::shared_ptr<platform::Object> object() const;
    /// The object if it is a T, else empty.
    template <class T>
    std::shared_ptr<T> objectAs() const {
        return std::dynamic_pointer_cast<T>(object());
    }

    /// A boxed number read as a truth: booleans as they are, numbers when not zero; anything else is false.
    bool isTrue() const;
    /// A boxed number read as a real: booleans as 0 and 1, integers and reals; anything else is empty.
    std::optional<double> number() const;
    /// A copy of the string, or "" when it is none.
    std::string stringOr(std::string_view fallback = {}) const;
    /// The entry of a dictionary, nil for a missing key or when this is no dictionary.
    Value operator[](std::string_view key) const;

    /// The text that "%@" gives: "(null)" for nil, the string itself, 1 and 0 for booleans, numbers in their
    /// shortest form, containers as a readable one-line listing, objects as their class's name.
    std::string description() const;

    /// Deep equality; reals by their bits (so NaN equals itself), objects by identity.
    bool operator==(const Value& other) const;

  private:
    /// As the types, but integers of two kinds; the last ones share their content.
    enum class Kind : std::uint8_t {
        Nil,
        Boolean,
        Integer,
        LargeInteger,
        Real,
        Date,
        String,
        Bytes,
        Elements,
        Dictionary,
        Object
    };

    template <class T>
    static constexpr bool isLarge(T integer) {
        return std::is_unsigned_v<T> && static_cast<std::uint64_t>(integer) > INT64_MAX;
    }
    template <class T>
    std::optional<T> valueIf(Kind kind, T value) const {
        return kind_ == kind ? std::optional<T>(value) : std::nullopt;
    }
    template <class T>
    const T* contentIf(Kind kind) const {
        return kind_ == kind ? &static_cast<const SharedContent<T>&>(owners()).content : nullptr;
    }
    template <class T>
    void share(Kind kind, T content) {
        SharedOwners* const owners = new SharedContent<T>(std::move(content));
        kind_ = kind;
        std::memcpy(&bits_, static_cast<const void*>(&owners), sizeof(SharedOwners*));
    }
    bool isShared() const { return kind_ >= Kind::String; }
    SharedOwners& owners() const {
        // A cast would hide from the compiler where the pointer came from.
        SharedOwners* owners = nullptr;
        std::memcpy(static_cast<void*>(&owners), &bits_, sizeof(SharedOwners*));
        return *owners;
    }
    /// Of a content that nobody has any more.
    void destroy();

    Kind kind_ = Kind::Nil;
    /// The number, the truth, or where the shared content is.
    std::uint64_t bits_ = 0;
};

/// Values under keys, in the order of the keys' bytes: finding one takes time in proportion to the logarithm
/// of how many there are, putting one in or taking one out between others moves those behind it. So whoever
/// has many in any order hands them over together (`ofEntries`). The keys are shared by copies, and by all
/// dictionaries that were made with the same, until they change.
///
/// It offers what std::map offers under the same names, as far as anybody needs it. An iterator gives a pair
/// of references, so `for (const auto& [key, value] : dictionary)` copies nothing. What puts in and takes out
/// makes iterators, references and pointers into it invalid.
class Dictionary {
  public:
    using Keys = std::vector<std::string>;
    using Entry = std::pair<std::string, Value>;

    /// Goes through the entries in the order of their keys, as pairs of references. Valid until the
    /// dictionary changes.
    template <class StoredValue>
    class Iterator {
      public:
        using iterator_category = std::bidirectional_iterator_tag;
        using difference_type = std::ptrdiff_t;
        using reference = std::pair<const std::string&, StoredValue&>;
        using value_type = reference;
        /// What the arrow points to.
        class pointer {
          public:
            explicit pointer(reference pair) : pair_(pair) {}
            const reference* operator->() const { return &pair_; }

          private:
            reference pair_;
        };

        Iterator() = default;
        Iterator(const std::string* key, StoredValue* value) : key_(key), value_(value) {}
        /// One that allows changes as one that does not.
        operator Iterator<const Value>() const { return {key_, value_}; }

        reference operator*() const { return {*key_, *value_}; }
        pointer operator->() const { return pointer(**this); }

        Iterator& operator++() {
            ++key_;
            ++value_;
            return *this;
        }
        Iterator& operator--() {
            --key_;
            --value_;
            return *this;
        }
        Iterator operator++(int) { return std::exchange(*this, Iterator(key_ + 1, value_ + 1)); }
        Iterator operator--(int) { return std::exchange(*this, Iterator(key_ - 1, value_ - 1)); }
        bool operator==(const Iterator& other) const { return value_ == other.value_; }

      private:
        const std::string* key_ = nullptr;
        StoredValue* value_ = nullptr;
    };
    using iterator = Iterator<Value>;
    using const_iterator = Iterator<const Value>;

    Dictionary() = default;
    /// Of a key that comes twice the first counts, as in std::map.
    Dictionary(std::initializer_list<Entry> entries);
    /// The entries in any order; of a key that comes twice the last counts.
    static Dictionary ofEntries(std::vector<Entry> entries);
    /// As many values as there are keys, which must be in order and come once each.
    Dictionary(Shared<Keys> keys, std::vector<Value> values);

    std::size_t size() const { return values_.size(); }
    bool empty() const { return values_.empty(); }
    void clear() { *this = Dictionary(); }
    /// In their order. Empty for a dictionary that never held anything.
    const Shared<Keys>& keys() const { return keys_; }

    iterator begin() { return iteratorAt(0); }
    iterator end() { return iteratorAt(size()); }
    const_iterator begin() const { return iteratorAt(0); }
    const_iterator end() const { return iteratorAt(size()); }

    /// The end when there is none.
    iterator find(std::string_view key);
    const_iterator find(std::string_view key) const;
    bool contains(std::string_view key) const { return find(key) != end(); }
    std::size_t count(std::string_view key) const { return contains(key) ? 1 : 0; }
    /// Throws std::out_of_range for a key that is not there.
    const Value& at(std::string_view key) const;
    Value& at(std::string_view key);
    /// Puts in nil when there is none.
    Value& operator[](std::string_view key);

    std::pair<iterator, bool> insert_or_assign(std::string_view key, Value value);
    /// Leaves the value that is there.
    std::pair<iterator, bool> emplace(std::string_view key, Value value);
    /// Puts in those of the other whose keys are not there.
    void merge(const Dictionary& other);
    /// How many there were, 0 or 1.
    std::size_t erase(std::string_view key);
    /// Returns the one behind it.
    iterator erase(const_iterator entry);

    bool operator==(const Dictionary& other) const;

  private:
    /// Where the key stands or would have to.
    std::size_t position(std::string_view key) const;
    bool isAt(std::size_t position, std::string_view key) const;
    void insertAt(std::size_t position, std::string_view key, Value value);
    void eraseAt(std::size_t position);
    const std::string* keyAt(std::size_t position) const {
        return keys_ ? keys_->data() + position : nullptr;
    }
    iterator iteratorAt(std::size_t position) { return {keyAt(position), values_.data() + position}; }
    const_iterator iteratorAt(std::size_t position) const {
        return {keyAt(position), values_.data() + position};
    }

    Shared<Keys> keys_;
    std::vector<Value> values_;
};

}  // namespace platform
