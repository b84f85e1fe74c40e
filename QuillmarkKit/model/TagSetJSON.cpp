#include "QuillmarkKit/model/TagSetJSON.h"

#include <optional>
#include <utility>

#include "platform/base/Base64.h"
#include "platform/base/Formats.h"

namespace QuillmarkKit {

namespace JSON = platform::JSON;
using Author = JSONPlace::Author;

JSONPlace JSONPlace::member(std::string_view name, const JSON::Value& of) const {
  JSONPlace inner{of, author, names};
  inner.names.push_back(name);
  return inner;
}

JSONPlace JSONPlace::requireMember(std::string_view name) const {
  const JSON::Object& members = object();
  const auto found = members.find(name);
  if (found != members.end()) return member(name, found->second);
  refuse((author == Author::program ? "has no member \"" : "has no \"") + std::string(name) + "\"");
}

void JSONPlace::refuse(const std::string& mistake) const {
  std::string place = names.empty() ? "the document" : JSON::placeOf(names);
  if (author == Author::program) {
    place = "\"";
    for (const std::string_view name : names) place.append(place.size() > 1 ? "." : "").append(name);
    place += '"';
  }
  throw JSON::DecodingError(place + " " + mistake);
}

void JSONPlace::refuseKind(const std::string& expected, std::string_view found) const {
  refuse(author == Author::program ? "should be " + expected + " but is " + std::string(found)
                                   : "is not " + expected);
}

const JSON::Object& JSONPlace::object() const {
  const JSON::Object* object = value.object();
  if (object == nullptr) refuseKind("an object", value.kind());
  return *object;
}

const std::string& JSONPlace::text() const {
  const std::string* text = value.string();
  if (text == nullptr) refuseKind("a text", value.kind());
  return *text;
}

std::int64_t JSONPlace::number() const {
  const JSON::Number* number = value.number();
  if (number == nullptr) refuseKind("a number", value.kind());
  const auto integer = number->integer();
  if (!integer) refuseKind("a whole number of at most 64 bits", number->text);
  return *integer;
}

namespace {

/// The members of a picture.
constexpr const char* dataName = "data";
constexpr const char* bytesName = "bytes";
constexpr const char* formatName = "format";

JSON::Value encodeArtwork(const Artwork& artwork, ArtworkForm form) {
  JSON::Object object;
  if (form == ArtworkForm::data) object.emplace(dataName, JSON::Base64Text{artwork.data});
  if (form == ArtworkForm::size) object.emplace(bytesName, static_cast<std::int64_t>(artwork.data.size()));
  object.emplace(formatName, std::string(rawValue(artwork.format)));
  return object;
}

Artwork::Format formatAt(const JSONPlace& place) {
  const auto format = artworkFormatFromRawValue(place.text());
  if (!format) place.refuse("is neither \"jpeg\" nor \"png\"");
  return *format;
}

/// Returns the picture that a program has written.
Artwork artworkAt(const JSONPlace& place) {
  const JSONPlace data = place.requireMember(dataName);
  const std::string& text = data.text();
  const JSONPlace format = place.requireMember(formatName);
  format.text();
  auto bytes = platform::Base64::decode(text);
  if (!bytes) data.refuse("is not base64");
  return {.data = std::move(*bytes), .format = formatAt(format)};
}

/// Returns the picture that a person has named, or nothing if only its size is given. Checks that the data
/// starts as its format does.
std::optional<Artwork> checkedArtworkAt(const JSONPlace& place) {
  for (const auto& [name, value] : place.object()) {
    if (name != dataName && name != bytesName && name != formatName)
      place.member(name, value).refuse("is not part of a picture");
  }
  const Artwork::Format format = formatAt(place.requireMember(formatName));
  const bool hasData = place.object().contains(dataName);
  if (hasData == place.object().contains(bytesName)) place.refuse("needs either \"data\" or \"bytes\"");
  if (!hasData) {
    const JSONPlace bytes = place.requireMember(bytesName);
    if (bytes.number() < 0) bytes.refuse("is less than 0");
    return std::nullopt;
  }
  const JSONPlace data = place.requireMember(dataName);
  auto bytes = platform::Base64::decode(data.text());
  if (!bytes) data.refuse("is not Base64");
  // The output of `read` must be accepted, and `read` recognises a PNG by these bytes alone.
  constexpr std::string_view startOfPNG = platform::pngSignature.substr(0, 4);
  const bool isPNG = format == Artwork::Format::png;
  if (!platform::charactersOf(*bytes).starts_with(isPNG ? startOfPNG : platform::jpegSignature)) {
    data.refuse(isPNG ? "is not a PNG picture" : "is not a JPEG picture");
  }
  return Artwork{.data = std::move(*bytes), .format = format};
}

void decodeField(const JSONPlace& place, TagField field, TagSet& tags) {
  dispatch(
      field, [&](TextMember text) { tags.*text = place.text(); },
      [&](NumberMember number) { tags.*number = place.number(); },
      [&] { tags.artwork = place.author == Author::program ? artworkAt(place) : checkedArtworkAt(place); });
}

/// Returns the field that the last name of the place names. Throws DecodingError if there is none.
TagField fieldAt(const JSONPlace& place) {
  const std::string_view name = place.names.back();
  if (const auto field = fieldFromRawValue(name)) return *field;
  const auto meant = fieldFromCliName(name);
  place.refuse(meant ? "is not a field, but \"" + std::string(rawValue(*meant)) + "\" is one"
                     : "is not a field");
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

TagSet decodeTagSet(const JSON::Value& value, std::string_view path) {
  const JSONPlace place{value, Author::program, {path}};
  TagSet tags;
  for (const auto& [name, member] : place.object()) {
    const auto field = fieldFromRawValue(name);
    if (field && !member.isNull()) decodeField(place.member(name, member), *field, tags);
  }
  return tags;
}

std::vector<FileChange> changesIn(std::string_view document) {
  JSON::Value root = JSON::parse(document, JSON::RepeatedNames::refused);
  const JSONPlace whole{root, Author::person, {}};
  std::vector<FileChange> changes;
  changes.reserve(whole.object().size());
  for (auto& [name, value] : *root.object()) {
    const JSONPlace file = whole.member(name, value);
    if (name.empty() || name.find('\0') != std::string::npos) file.refuse("cannot be the name of a file");
    FileChange& change = changes.emplace_back();
    change.file = name;
    for (const auto& [fieldName, member] : file.object()) {
      const JSONPlace place = file.member(fieldName, member);
      const TagField field = fieldAt(place);
      if (!member.isNull()) decodeField(place, field, change.tags);
      // A picture of which only the size is given stays.
      if (member.isNull() || field != TagField::artwork || change.tags.artwork) change.selected.insert(field);
    }
    // Release the encoded picture, so that it is not in memory in both forms.
    value = {};
  }
  return changes;
}

}  // namespace QuillmarkKit
