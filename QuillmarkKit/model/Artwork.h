#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/base/Bytes.h"

namespace QuillmarkKit {

/// A cover picture: the picture file's bytes, unchanged, and their format. Copies share the bytes.
struct Artwork {
  enum class Format : std::uint8_t { jpeg, png };
  static constexpr Format lastFormat = Format::png;

  platform::SharedBytes data;
  Format format;

  /// Returns the picture with the format that the bytes' signature shows; nothing for bytes that are neither
  /// JPEG nor PNG. Checks only the signature. The caller must check the result before a write that selects
  /// the artwork: a tag set without artwork then removes the file's pictures.
  static std::optional<Artwork> detecting(platform::SharedBytes bytes);

  bool operator==(const Artwork&) const = default;
};

/// "jpeg" or "png".
std::string_view rawValue(Artwork::Format format);
std::optional<Artwork::Format> artworkFormatFromRawValue(std::string_view raw);
/// "image/jpeg" or "image/png".
std::string_view mimeType(Artwork::Format format);

}  // namespace QuillmarkKit
