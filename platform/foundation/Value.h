// SPDX-License-Identifier: MIT
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>
#include <vector>

namespace platform {

class Object;
class Value;

/// The kinds of values. Declared before the types of the same names, which it would otherwise shadow.
enum class ValueType { Nil, Boolean, Integer, Real, String, Date, Data, Array, Dictionary, Object };

using Array = std::vector<Value>;
using Dictionary = std::map<std::string, Value, std::less<>>;
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
    Value(std::same_as<bool> auto boolean) : store_(boolean) {}
    /// Integers of every width; above the range of int64_t they are kept as unsigned.
    template <std::integral T>
        requires(!std::same_as<T, bool>)
    Value(T integer) {
        if constexpr (std::is_unsigned_v<T>) {
            setUnsigned(static_cast<std::uint64_t>(integer));
        } else {
            store_ = static_cast<std::int64_t>(integer);
        }
    }
    Value(std::floating_point auto real) : store_(static_cast<double>(real)) {}
    /// A null pointer gives nil.
    Value(const char* text);
    Value(std::string text);
    Value(std::string_view text);
    Value(platform::Date date) : store_(date) {}
    Value(platform::Data data);
    Value(platform::Array array);
    Value(platform::Dictionary dictionary);
    /// An empty pointer gives nil.
    template <std::derived_from<platform::Object> T>
    Value(std::shared_ptr<T> object) {
        if (object) store_ = std::shared_ptr<platform::Object>(std::move(object));
    }

    Type type() const;
    bool isNil() const { return std::holds_alternative<std::monostate>(store_); }
    explicit operator bool() const { return !isNil(); }

    /// Each accessor answers only for its own type; any other type gives the empty optional or null.
    /// The pointers stay valid as long as some copy of this value lives.
    std::optional<bool> boolean() const;
    std::optional<std::int64_t> integer() const;
    /// Any integer that is not negative, the ones above int64_t included.
    std::optional<std::uint64_t> unsignedInteger() const;
    std::optional<double> real() const;
    const std::string* string() const;
    std::optional<platform::Date> date() const;
    const platform::Data* data() const;
    const platform::Array* array() const;
    const platform::Dictionary* dictionary() const;
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
    void setUnsigned(std::uint64_t integer);

    std::variant<std::monostate, bool, std::int64_t, std::uint64_t, double,
                 std::shared_ptr<const std::string>, platform::Date, std::shared_ptr<const platform::Data>,
                 std::shared_ptr<const platform::Array>, std::shared_ptr<const platform::Dictionary>,
                 std::shared_ptr<platform::Object>>
        store_;
};

}  // namespace platform
