#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/base/Bytes.h"

namespace QuillmarkKit {

/// A cover picture: the picture file's bytes, unchanged, and their format. Copies share the bytes.
struct Artwork {
  enum class Format : std::uint8_t { jpeg, png };

  platform::SharedBytes data;
  Format format;

  /// Returns a picture of the format whose signature the bytes start with, or nothing if they are neither
  /// JPEG nor PNG. The data after the signature is not checked. Before a write that selects the artwork, the
  /// caller must check the result: a tag set without artwork removes the pictures from the file.
  static std::optional<Artwork> detecting(platform::SharedBytes bytes);

  bool operator==(const Artwork&) const = default;
};

/// Returns "jpeg" or "png".
std::string_view rawValue(Artwork::Format format);
std::optional<Artwork::Format> artworkFormatFromRawValue(std::string_view raw);
/// Returns "image/jpeg" or "image/png".
std::string_view mimeType(Artwork::Format format);

}  // namespace QuillmarkKit
