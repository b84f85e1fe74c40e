#include "QuillmarkKit/model/Artwork.h"

#include <utility>

#include "platform/base/Formats.h"

namespace QuillmarkKit {

std::optional<Artwork> Artwork::detecting(platform::SharedBytes bytes) {
  const std::string_view name = platform::formatOf(platform::charactersOf(bytes), platform::artworkFormat);
  if (name.empty()) return std::nullopt;
  const Format format = name == "PNG" ? Format::png : Format::jpeg;
  return Artwork{.data = std::move(bytes), .format = format};
}

std::string_view rawValue(Artwork::Format format) {
  return format == Artwork::Format::png ? "png" : "jpeg";
}

std::optional<Artwork::Format> artworkFormatFromRawValue(std::string_view raw) {
  for (const Artwork::Format format : {Artwork::Format::jpeg, Artwork::Format::png}) {
    if (rawValue(format) == raw) return format;
  }
  return std::nullopt;
}

std::string_view mimeType(Artwork::Format format) {
  return format == Artwork::Format::png ? "image/png" : "image/jpeg";
}

}  // namespace QuillmarkKit
