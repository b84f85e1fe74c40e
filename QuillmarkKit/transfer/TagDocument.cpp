#include "QuillmarkKit/transfer/TagDocument.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/base/Base64.h"
#include "platform/base/Formats.h"
#include "platform/base/JSON.h"

namespace QuillmarkKit {

namespace JSON = platform::JSON;

namespace {

/// A value of the document, and the names of the members that lead to it, outermost first.
struct Place {
  const JSON::Value& value;
  std::vector<std::string_view> names;

  Place member(std::string_view name, const JSON::Value& of) const {
    Place inner{of, names};
    inner.names.push_back(name);
    return inner;
  }

  /// Throws a DecodingError that names the place. `mistake` is the predicate of the message, without a full
  /// stop.
  [[noreturn]] void refuse(std::string_view mistake) const {
    const std::string place = names.empty() ? "the document" : JSON::placeOf(names);
    throw JSON::DecodingError(place + " " + std::string(mistake));
  }

  const JSON::Object& object() const {
    const JSON::Object* object = value.object();
    if (object == nullptr) refuse("is not an object");
    return *object;
  }

  const std::string& text() const {
    const std::string* text = value.string();
    if (text == nullptr) refuse("is not a text");
    return *text;
  }

  std::int64_t number() const {
    const JSON::Number* number = value.number();
    if (number == nullptr) refuse("is not a number");
    const auto integer = number->integer();
    if (!integer) refuse("is not a whole number of at most 64 bits");
    return *integer;
  }
};

/// The members of a picture.
constexpr std::string_view dataName = "data";
constexpr std::string_view bytesName = "bytes";
constexpr std::string_view formatName = "format";

Artwork::Format formatAt(const Place& place) {
  const auto format = artworkFormatFromRawValue(place.text());
  if (!format) place.refuse("is neither \"jpeg\" nor \"png\"");
  return *format;
}

Artwork artworkAt(const Place& data, Artwork::Format format) {
  auto bytes = platform::Base64::decode(data.text());
  if (!bytes) data.refuse("is not Base64");
  // The output of `read` must be accepted, and `read` recognises a PNG by these bytes alone.
  constexpr std::string_view startOfPNG = platform::pngSignature.substr(0, 4);
  const bool isPNG = format == Artwork::Format::png;
  if (!platform::charactersOf(*bytes).starts_with(isPNG ? startOfPNG : platform::jpegSignature)) {
    data.refuse(isPNG ? "is not a PNG picture" : "is not a JPEG picture");
  }
  return {.data = std::move(*bytes), .format = format};
}

/// Returns the picture, or nothing if only its size is given.
std::optional<Artwork> pictureAt(const Place& place) {
  std::optional<Place> data;
  std::optional<Place> bytes;
  std::optional<Place> format;
  for (const auto& [name, value] : place.object()) {
    const Place member = place.member(name, value);
    if (name == dataName) {
      data.emplace(member);
    } else if (name == bytesName) {
      bytes.emplace(member);
    } else if (name == formatName) {
      format.emplace(member);
    } else {
      member.refuse("is not part of a picture");
    }
  }
  if (!format) place.refuse("has no \"format\"");
  const Artwork::Format found = formatAt(*format);
  if (data.has_value() == bytes.has_value()) place.refuse("needs either \"data\" or \"bytes\"");
  if (data) return artworkAt(*data, found);
  if (bytes->number() < 0) bytes->refuse("is less than 0");
  return std::nullopt;
}

TagField fieldAt(const Place& place) {
  const std::string_view name = place.names.back();
  if (const auto field = fieldFromRawValue(name)) return *field;
  const auto meant = fieldFromCliName(name);
  if (!meant) place.refuse("is not a field");
  place.refuse("is not a field, but \"" + std::string(rawValue(*meant)) + "\" is one");
}

void addField(const Place& place, FileChange& change) {
  const TagField field = fieldAt(place);
  TagSet& tags = change.tags;
  bool isSelected = true;
  if (!place.value.isNull()) {
    dispatch(
        field, [&](TextMember text) { tags.*text = place.text(); },
        [&](NumberMember number) { tags.*number = place.number(); },
        [&] {
          tags.artwork = pictureAt(place);
          isSelected = tags.artwork.has_value();
        });
  }
  if (isSelected) change.selected.insert(field);
}

}  // namespace

std::vector<FileChange> changesIn(std::string_view document) {
  JSON::Value root = JSON::parse(document, JSON::RepeatedNames::refused);
  const Place whole{root, {}};
  std::vector<FileChange> changes;
  changes.reserve(whole.object().size());
  for (auto& [name, value] : *root.object()) {
    const Place file = whole.member(name, value);
    if (name.empty() || name.find('\0') != std::string::npos) file.refuse("cannot be the name of a file");
    FileChange& change = changes.emplace_back();
    change.file = name;
    for (const auto& [field, fieldValue] : file.object()) addField(file.member(field, fieldValue), change);
    // Release the encoded picture, so that it is not in memory in both forms.
    value = {};
  }
  return changes;
}

}  // namespace QuillmarkKit
