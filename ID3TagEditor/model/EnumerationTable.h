#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

namespace ID3TagEditor {

/// The case at a position, for an enumeration whose raw values count its `Count` cases from 0.
template <class Enumeration, std::size_t Count>
constexpr std::optional<Enumeration> caseAt(std::size_t raw) {
  if (raw >= Count) return std::nullopt;
  return static_cast<Enumeration>(raw);
}

/// All `Count` cases of such an enumeration in declaration order.
template <class Enumeration, std::size_t Count>
constexpr std::array<Enumeration, Count> everyCase() {
  std::array<Enumeration, Count> cases{};
  for (std::size_t i = 0; i < Count; ++i) cases[i] = static_cast<Enumeration>(i);
  return cases;
}

}  // namespace ID3TagEditor
