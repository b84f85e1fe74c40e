#include "QuillmarkKit/model/JSONDecoding.h"

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

}  // namespace QuillmarkKit
