#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <optional>
#include <string_view>

namespace ID3TagEditor {

/// A major version of the format. The raw value is the version byte of the tag header (ID3v2.3.0 §3.1).
enum class ID3Version : std::uint8_t { version2 = 2, version3 = 3, version4 = 4 };

inline constexpr std::array<ID3Version, 3> allVersions{ID3Version::version2, ID3Version::version3,
                                                       ID3Version::version4};

constexpr std::uint8_t rawValue(ID3Version version) {
  return static_cast<std::uint8_t>(version);
}

constexpr std::optional<ID3Version> versionFromRawValue(std::uint8_t raw) {
  if (raw < 2 || raw > 4) return std::nullopt;
  return static_cast<ID3Version>(raw);
}

/// Returns the column of the version in the tables of this folder.
constexpr std::size_t columnOf(ID3Version version) {
  return static_cast<std::size_t>(rawValue(version)) - 2;
}

constexpr std::string_view caseName(ID3Version version) {
  constexpr std::array<std::string_view, 3> names{"version2", "version3", "version4"};
  return names[columnOf(version)];
}

}  // namespace ID3TagEditor
