// The templates of value.h and table.h.
#pragma once

#include "scriptwells/value.h"

namespace scriptwells {

namespace detail {

template <class T>
struct IsOptional : std::false_type {};
template <class T>
struct IsOptional<std::optional<T>> : std::true_type {};
template <class T>
struct IsTimePoint : std::false_type {};
template <class D>
struct IsTimePoint<std::chrono::time_point<std::chrono::system_clock, D>> : std::true_type {};
template <class T>
struct IsSpan : std::false_type {};
template <class R, class P>
struct IsSpan<std::chrono::duration<R, P>> : std::true_type {};

// For messages.
template <class T>
constexpr const char* NameOfWhole() noexcept {
  constexpr const char* kSigned[] = {"an 8-bit integer", "a 16-bit integer", "a 32-bit integer",
                                     "a 64-bit integer"};
  constexpr const char* kUnsigned[] = {"an unsigned 8-bit integer", "an unsigned 16-bit integer",
                                       "an unsigned 32-bit integer", "an unsigned 64-bit integer"};
  constexpr std::size_t kSize = sizeof(T) == 1 ? 0 : sizeof(T) == 2 ? 1 : sizeof(T) == 4 ? 2 : 3;
  return std::is_signed_v<T> ? kSigned[kSize] : kUnsigned[kSize];
}

}  // namespace detail

template <class T>
Value::Sum Value::Natural(T value) {
  if constexpr (std::is_same_v<T, bool> || std::is_floating_point_v<T>) {
    return value;
  } else if constexpr (std::is_unsigned_v<T> && sizeof(T) == 8) {
    return Signed(value);
  } else {
    // An unsigned type needs one size more.
    constexpr std::size_t kBytes = std::is_signed_v<T> ? sizeof(T) : 2 * sizeof(T);
    using Whole =
        std::conditional_t<kBytes == 1, std::int8_t,
                           std::conditional_t<kBytes == 2, std::int16_t,
                                              std::conditional_t<kBytes == 4, std::int32_t, std::int64_t>>>;
    return static_cast<Whole>(value);
  }
}

template <class T>
T Value::As() const {
  if constexpr (detail::IsOptional<T>::value) {
    if (IsEmpty()) return std::nullopt;
    return As<typename T::value_type>();
  } else if constexpr (std::is_same_v<T, Value>) {
    return *this;
  } else if constexpr (std::is_same_v<T, double>) {
    return Number();
  } else if constexpr (std::is_same_v<T, float>) {
    return SingleNumber();
  } else if constexpr (std::is_integral_v<T> && !std::is_same_v<T, bool>) {
    static_assert(detail::kIsNumber<T>, "a character is no number: use std::string or int");
    constexpr const char* kName = detail::NameOfWhole<T>();
    using Limits = std::numeric_limits<T>;
    if constexpr (std::is_unsigned_v<T>)
      return static_cast<T>(Unsigned(Limits::max(), kName));
    else
      return static_cast<T>(Whole(Limits::min(), Limits::max(), kName));
  } else if constexpr (detail::IsTimePoint<T>::value) {
    return std::chrono::time_point_cast<typename T::duration>(As<DateTime>().ToTimePoint());
  } else if constexpr (detail::IsSpan<T>::value) {
    return std::chrono::duration_cast<T>(As<Duration>().ToMilliseconds());
  } else {
    static_assert(detail::kIsOneOf<T, bool, std::string, Date, Time, DateTime, Duration, Link, Table>,
                  "not a type that values have: see Value::As");
    T result{};
    Read(result);
    return result;
  }
}

inline Table Value::AsTable() const {
  return As<Table>();
}

template <class T>
T Cell::As() const {
  try {
    return Get().template As<T>();
  } catch (const ConversionError&) {
    Rethrow();
  }
}

template <class T>
T Cell::ValueOr(T fallback) const {
  return IsEmpty() ? std::move(fallback) : As<T>();
}

template <class T>
std::vector<T> Table::ColumnAs(std::string_view column) const {
  const std::size_t index = IndexOf(column);
  std::vector<T> values;
  values.reserve(size());
  for (std::size_t row = 0; row < size(); ++row) values.push_back((*this)[row][index].As<T>());
  return values;
}

template <class... T, class... Name>
TypedRows<T...> Table::As(const Name&... columns) const {
  static_assert(sizeof...(Name) == 0 || sizeof...(Name) == sizeof...(T), "one column for each type");
  std::vector<std::size_t> indexes{IndexOf(columns)...};
  if constexpr (sizeof...(Name) == 0) {
    if (Columns().size() != sizeof...(T)) RefuseTypes(sizeof...(T));
    for (std::size_t i = 0; i < sizeof...(T); ++i) indexes.push_back(i);
  }
  return TypedRows<T...>(*this, std::move(indexes));
}

}  // namespace scriptwells
