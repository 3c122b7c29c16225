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
T Value::As() const& {
  if constexpr (detail::IsOptional<T>::value) {
    if (IsEmpty()) return std::nullopt;
    return As<typename T::value_type>();
  } else if constexpr (std::is_same_v<T, Value>) {
    return *this;
  } else if constexpr (std::is_integral_v<T> && !std::is_same_v<T, bool>) {
    static_assert(detail::kIsNumber<T>, "a character is no number: use std::string or int");
    if constexpr (std::is_unsigned_v<T>)
      return static_cast<T>(Unsigned(sizeof(T)));
    else
      return static_cast<T>(Whole(sizeof(T)));
  } else if constexpr (detail::IsTimePoint<T>::value) {
    return T(Exactly<typename T::duration>(As<DateTime>().ToTimePoint().time_since_epoch()));
  } else if constexpr (detail::IsSpan<T>::value) {
    return Exactly<T>(As<Duration>().ToMilliseconds());
  } else {
    static_assert(
        detail::kIsOneOf<T, bool, float, double, std::string, Date, Time, DateTime, Duration, Link, Table>,
        "not a type that values have: see Value::As");
    T result{};
    Read(result);
    return result;
  }
}

template <class T>
T Value::As() && {
  if constexpr (detail::kIsOneOf<T, bool, std::int32_t, double, std::string>)
    if (T* const held = std::get_if<T>(&sum_)) return std::move(*held);
  return std::as_const(*this).template As<T>();
}

template <class Span>
Span Value::Exactly(std::chrono::milliseconds span) const {
  const auto converted = [span] { return std::chrono::duration_cast<Span>(span); };
  if constexpr (!std::chrono::treat_as_floating_point_v<typename Span::rep>) {
    using Wide = std::chrono::duration<long double, std::milli>;
    if (Wide(span) < Wide(Span::min()) || Wide(span) > Wide(Span::max()) ||
        std::chrono::duration_cast<std::chrono::milliseconds>(converted()) != span)
      Refuse("does not fit the unit that was asked for");
  }
  return converted();
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
