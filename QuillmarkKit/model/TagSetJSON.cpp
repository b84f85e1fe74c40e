#include "QuillmarkKit/model/TagSetJSON.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/base/Base64.h"
#include "platform/base/Formats.h"
#include "platform/base/JSON.h"

namespace QuillmarkKit {

namespace JSON = platform::JSON;

namespace {

JSON::DecodingError unexpected(std::string_view path, std::string_view expected, std::string_view found) {
  std::string description;
  description.append("\"").append(path).append("\" should be ").append(expected);
  return JSON::DecodingError(description.append(" but is ").append(found));
}

}  // namespace

const JSON::Object& requireObject(const JSON::Value& value, std::string_view path) {
  const JSON::Object* object = value.object();
  if (object == nullptr) throw unexpected(path, "an object", value.kind());
  return *object;
}

const JSON::Value& requireMember(const JSON::Object& object, std::string_view path, std::string_view name) {
  const auto found = object.find(name);
  if (found != object.end()) return found->second;
  throw JSON::DecodingError("\"" + std::string(path) + "\" has no member \"" + std::string(name) + "\"");
}

const std::string& decodeText(const JSON::Value& value, std::string_view path) {
  const std::string* text = value.string();
  if (text == nullptr) throw unexpected(path, "a text", value.kind());
  return *text;
}

std::int64_t decodeNumber(const JSON::Value& value, std::string_view path) {
  const JSON::Number* number = value.number();
  if (number == nullptr) throw unexpected(path, "a number", value.kind());
  const auto integer = number->integer();
  if (!integer) throw unexpected(path, "a whole number of at most 64 bits", number->text);
  return *integer;
}

namespace Base64 = platform::Base64;

namespace {

JSON::Value encodeArtwork(const Artwork& artwork, ArtworkForm form) {
  JSON::Object object;
  if (form == ArtworkForm::data) object.emplace("data", JSON::Base64Text{artwork.data});
  if (form == ArtworkForm::size) object.emplace("bytes", static_cast<std::int64_t>(artwork.data.size()));
  object.emplace("format", std::string(rawValue(artwork.format)));
  return object;
}

Artwork decodeArtwork(const JSON::Value& value, const std::string& path) {
  const JSON::Object& object = requireObject(value, path);
  const std::string& text = decodeText(requireMember(object, path, "data"), path + ".data");
  const std::string& name = decodeText(requireMember(object, path, "format"), path + ".format");
  auto data = Base64::decode(text);
  if (!data) throw JSON::DecodingError("\"" + path + ".data\" is not base64");
  const auto format = artworkFormatFromRawValue(name);
  if (!format) throw JSON::DecodingError("\"" + path + ".format\" is neither \"jpeg\" nor \"png\"");
  return {.data = std::move(*data), .format = *format};
}

}  // namespace

JSON::Value encodeTagSet(const TagSet& tags, ArtworkForm form) {
  JSON::Object object;
  for (const TagField field : allTagFields) {
    const auto add = [&](JSON::Value value) { object.emplace(rawValue(field), std::move(value)); };
    dispatch(
        field,
        [&](TextMember text) {
          if (tags.*text) add(*(tags.*text));
        },
        [&](NumberMember number) {
          if (tags.*number) add(*(tags.*number));
        },
        [&] {
          if (tags.artwork) add(encodeArtwork(*tags.artwork, form));
        });
  }
  return object;
}

TagSet decodeTagSet(const JSON::Value& value, const std::string& path) {
  const JSON::Object& object = requireObject(value, path);
  TagSet tags;
  for (const auto& entry : object) {
    const JSON::Value& member = entry.second;
    const auto field = fieldFromRawValue(entry.first);
    if (!field || member.isNull()) continue;
    std::string memberPath = path;
    memberPath.append(".").append(entry.first);
    dispatch(
        *field, [&](TextMember text) { tags.*text = decodeText(member, memberPath); },
        [&](NumberMember number) { tags.*number = decodeNumber(member, memberPath); },
        [&] { tags.artwork = decodeArtwork(member, memberPath); });
  }
  return tags;
}

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
