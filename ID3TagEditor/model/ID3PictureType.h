#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/base/EnumerationTable.h"

namespace ID3TagEditor {

// clang-format off
#define ID3_PICTURE_TYPES(X) \
  X(other) X(fileIcon) X(otherFileIcon) X(frontCover) X(backCover) X(leafletPage) X(media) \
  X(leadArtistLeadPerformerSoloist) X(artistPerformer) X(conductor) X(bandOrchestra) X(composer) \
  X(lyricistTextWriter) X(recordingLocation) X(duringRecording) X(duringPerformance) \
  X(movieVideoScreenCapture) X(aBrightColouredFish) X(illustration) X(bandArtistLogotype) \
  X(publisherStudioLogotype)
// clang-format on

/// The subject of an attached picture. The raw value is the picture type byte (ID3v2.3.0 §4.15).
enum class ID3PictureType : std::uint8_t {
#define ID3_PICTURE_TYPE(name) name,
  ID3_PICTURE_TYPES(ID3_PICTURE_TYPE)
#undef ID3_PICTURE_TYPE
};

inline constexpr std::array pictureTypeNames = std::to_array<std::string_view>({
#define ID3_PICTURE_TYPE(name) #name,
    ID3_PICTURE_TYPES(ID3_PICTURE_TYPE)
#undef ID3_PICTURE_TYPE
});
#undef ID3_PICTURE_TYPES

inline constexpr auto allPictureTypes = platform::everyCase<ID3PictureType, pictureTypeNames.size()>();

constexpr std::uint8_t rawValue(ID3PictureType type) {
  return static_cast<std::uint8_t>(type);
}

constexpr std::optional<ID3PictureType> pictureTypeFromRawValue(std::uint8_t raw) {
  return platform::caseAt<ID3PictureType, pictureTypeNames.size()>(raw);
}

constexpr std::string_view caseName(ID3PictureType type) {
  return pictureTypeNames[rawValue(type)];
}

}  // namespace ID3TagEditor
