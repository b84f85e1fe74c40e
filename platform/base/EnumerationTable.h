#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <optional>

// Tables with one row for each case of an enumeration. The cases count from 0, and are the positions of their
// rows.
namespace platform {

/// Returns the case with this raw value, or nothing if there is none. The raw values of the enumeration must
/// count its `Count` cases from 0.
template <class Enumeration, std::size_t Count>
constexpr std::optional<Enumeration> caseAt(std::size_t raw) {
  if (raw >= Count) return std::nullopt;
  return static_cast<Enumeration>(raw);
}

/// Returns all `Count` cases of such an enumeration in declaration order.
template <class Enumeration, std::size_t Count>
constexpr std::array<Enumeration, Count> everyCase() {
  std::array<Enumeration, Count> cases{};
  for (std::size_t i = 0; i < Count; ++i) cases[i] = static_cast<Enumeration>(i);
  return cases;
}

/// Returns whether there is one row for each case up to `last`, in declaration order. `key` returns the case
/// of a row.
template <class Rows, class Key, class Enumeration>
constexpr bool hasARowForEachCase(const Rows& rows, Key key, Enumeration last) {
  std::size_t position = 0;
  for (const auto& row : rows) {
    if (static_cast<std::size_t>(std::invoke(key, row)) != position++) return false;
  }
  return position == static_cast<std::size_t>(last) + 1;
}

}  // namespace platform
