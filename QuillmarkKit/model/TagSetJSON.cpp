#include "QuillmarkKit/model/TagSetJSON.h"

#include "platform/Base64.h"

namespace QuillmarkKit {

namespace JSON = platform::JSON;
namespace Base64 = platform::Base64;

namespace {

JSON::Value encodeArtwork(const Artwork& artwork) {
  JSON::Object object;
  object.emplace("data", Base64::encode(artwork.data));
  object.emplace("format", std::string(rawValue(artwork.format)));
  return object;
}

[[noreturn]] void failAt(const std::string& path, std::string_view expected, const JSON::Value& found) {
  throw JSON::DecodingError("\"" + path + "\" should be " + std::string(expected) + " but is " +
                            std::string(found.kind()));
}

const std::string& decodeText(const JSON::Value& value, const std::string& path) {
  const std::string* text = value.string();
  if (text == nullptr) failAt(path, "a text", value);
  return *text;
}

std::int64_t decodeNumber(const JSON::Value& value, const std::string& path) {
  const JSON::Number* number = value.number();
  if (number == nullptr) failAt(path, "a number", value);
  const auto integer = number->integer();
  if (!integer) {
    throw JSON::DecodingError("\"" + path + "\" should be a whole number of at most 64 bits but is " +
                              number->text);
  }
  return *integer;
}

const JSON::Value& requiredMember(const JSON::Object& object, const std::string& path,
                                  std::string_view name) {
  const auto found = object.find(name);
  if (found == object.end()) {
    throw JSON::DecodingError("\"" + path + "\" has no member \"" + std::string(name) + "\"");
  }
  return found->second;
}

Artwork decodeArtwork(const JSON::Value& value, const std::string& path) {
  const JSON::Object* object = value.object();
  if (object == nullptr) failAt(path, "an object", value);
  const std::string& text = decodeText(requiredMember(*object, path, "data"), path + ".data");
  const std::string& name = decodeText(requiredMember(*object, path, "format"), path + ".format");
  auto data = Base64::decode(text);
  if (!data) throw JSON::DecodingError("\"" + path + ".data\" is not base64");
  const auto format = artworkFormatFromRawValue(name);
  if (!format) throw JSON::DecodingError("\"" + path + ".format\" is neither \"jpeg\" nor \"png\"");
  return {.data = std::move(*data), .format = *format};
}

}  // namespace

JSON::Value encodeTagSet(const TagSet& tags) {
  JSON::Object object;
  for (const TagField field : allTagFields) {
    std::string name(rawValue(field));
    if (const TextMember text = stringKeyPath(field)) {
      if (tags.*text) object.emplace(std::move(name), *(tags.*text));
    } else if (const NumberMember number = integerKeyPath(field)) {
      if (tags.*number) object.emplace(std::move(name), *(tags.*number));
    } else if (tags.artwork) {
      object.emplace(std::move(name), encodeArtwork(*tags.artwork));
    }
  }
  return object;
}

TagSet decodeTagSet(const JSON::Value& value, const std::string& path) {
  const JSON::Object* object = value.object();
  if (object == nullptr) failAt(path, "an object", value);
  TagSet tags;
  for (const auto& [name, member] : *object) {
    const auto field = fieldFromRawValue(name);
    if (!field || member.isNull()) continue;
    const std::string memberPath = path + "." + name;
    if (const TextMember text = stringKeyPath(*field)) {
      tags.*text = decodeText(member, memberPath);
    } else if (const NumberMember number = integerKeyPath(*field)) {
      tags.*number = decodeNumber(member, memberPath);
    } else {
      tags.artwork = decodeArtwork(member, memberPath);
    }
  }
  return tags;
}

}  // namespace QuillmarkKit
