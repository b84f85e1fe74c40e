#include "QuillmarkKit/model/TagSetJSON.h"

#include "QuillmarkKit/model/JSONDecoding.h"
#include "platform/base/Base64.h"

namespace QuillmarkKit {

namespace JSON = platform::JSON;
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

}  // namespace QuillmarkKit
