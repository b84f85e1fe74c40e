#include "QuillmarkKit/store/standard/TagNotes.h"

#include <algorithm>
#include <array>
#include <utility>

#include "QuillmarkKit/store/file/FieldFrames.h"
#include "platform/base/Formats.h"
#include "platform/base/Strings.h"

namespace QuillmarkKit::TagDescriptions {

namespace Strings = platform::Strings;

namespace {

/// The names of picture types by their numbers (ID3v2.4.0 frames §4.14).
constexpr std::array<std::string_view, 21> pictureTypes{
    "other picture", "file icon",     "other file icon",  "front cover", "back cover",  "leaflet page",
    "media",         "lead artist",   "artist",           "conductor",   "band",        "composer",
    "lyricist",      "location",      "recording",        "performance", "video frame", "bright fish",
    "illustration",  "artist's logo", "publisher's logo",
};

/// Returns the format by the signature of the data, because the MIME type may be wrong. If no signature
/// matches, returns a name from the MIME type, such as "JXL" for "image/jxl".
std::string formatOf(const ID3v2::Picture& picture) {
  static constexpr std::array signatures = std::to_array<std::pair<std::string_view, std::string_view>>(
      {{platform::jpegSignature, "JPEG"},
       {platform::pngSignature.substr(0, 4), "PNG"},
       {"GIF8", "GIF"},
       {"RIFF", "WebP"},
       {"BM", "BMP"}});
  if (picture.mimeType == "-->") return "a link";
  for (const auto& [signature, name] : signatures) {
    if (platform::charactersOf(picture.data).starts_with(signature)) return std::string(name);
  }
  constexpr std::string_view prefix = "image/";
  std::string_view type = picture.mimeType;
  if (type.starts_with(prefix)) type.remove_prefix(prefix.size());
  if (type.empty()) return "of unknown format";
  std::string name(type);
  std::ranges::transform(name, name.begin(), Strings::toASCIIUpper);
  return name;
}

}  // namespace

std::string inQuotes(std::string_view text) {
  constexpr std::size_t limit = 60;
  std::string shown = "\"";
  std::size_t count = 0;
  text = Strings::trimmingNulls(Strings::trimmingWhiteSpace(text));
  while (!text.empty()) {
    if (count++ == limit) {
      shown += "…";
      break;
    }
    const std::size_t length = Strings::firstCharacter(text).length;
    const char first = text.front();
    if (first == '\0') {
      shown += " / ";
    } else if (first == '\n' || first == '\r') {
      shown += ' ';
    } else {
      shown += text.substr(0, length);
    }
    text.remove_prefix(length);
  }
  return shown + "\"";
}

std::string_view pictureType(std::uint8_t number) {
  return number < pictureTypes.size() ? pictureTypes[number] : pictureTypes[0];
}

std::string describe(const ID3v2::Picture& picture) {
  return std::string(pictureType(picture.type)) + ", " + formatOf(picture) + ", " +
         std::to_string(picture.data.size()) + " bytes";
}

std::string nameOf(std::string_view identifier) {
  const auto field = std::ranges::find(FieldFrames::identifiers, identifier);
  if (field == FieldFrames::identifiers.end()) return std::string(identifier);
  const std::string name =
      nameInSentence(allTagFields[static_cast<std::size_t>(field - FieldFrames::identifiers.begin())]);
  // One frame contains the number and the total of a track.
  return name.substr(0, name.find(" number"));
}

}  // namespace QuillmarkKit::TagDescriptions
