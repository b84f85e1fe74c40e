#include "QuillmarkKit/model/Artwork.h"

#include <array>

#include "platform/base/EnumerationTable.h"
#include "platform/base/Formats.h"

namespace QuillmarkKit {

namespace {

struct FormatRow {
  Artwork::Format format;
  std::string_view rawValue;
  std::string_view mimeType;
  std::string_view signature;
};

constexpr std::array formats = std::to_array<FormatRow>({
    {Artwork::Format::jpeg, "jpeg", "image/jpeg", platform::jpegSignature},
    {Artwork::Format::png, "png", "image/png", platform::pngSignature},
});
static_assert(platform::hasARowForEachCase(formats, &FormatRow::format, Artwork::lastFormat));

const FormatRow& rowOf(Artwork::Format format) {
  return formats[static_cast<std::size_t>(format)];
}

}  // namespace

std::optional<Artwork> Artwork::detecting(platform::SharedBytes bytes) {
  for (const FormatRow& row : formats) {
    if (platform::charactersOf(bytes).starts_with(row.signature)) {
      return Artwork{.data = std::move(bytes), .format = row.format};
    }
  }
  return std::nullopt;
}

std::string_view rawValue(Artwork::Format format) {
  return rowOf(format).rawValue;
}

std::optional<Artwork::Format> artworkFormatFromRawValue(std::string_view raw) {
  for (const FormatRow& row : formats) {
    if (row.rawValue == raw) return row.format;
  }
  return std::nullopt;
}

std::string_view mimeType(Artwork::Format format) {
  return rowOf(format).mimeType;
}

}  // namespace QuillmarkKit
