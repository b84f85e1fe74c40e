#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace ID3TagEditor {

/// The picture formats that the engine distinguishes.
enum class ID3PictureFormat : std::uint8_t { jpeg, png };

inline constexpr std::array<ID3PictureFormat, 2> allPictureFormats{ID3PictureFormat::jpeg,
                                                                   ID3PictureFormat::png};

constexpr std::string_view caseName(ID3PictureFormat format) {
  return format == ID3PictureFormat::jpeg ? "jpeg" : "png";
}

}  // namespace ID3TagEditor
