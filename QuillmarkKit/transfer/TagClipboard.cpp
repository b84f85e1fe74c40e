#include "QuillmarkKit/transfer/TagClipboard.h"

#include "QuillmarkKit/model/TagSetJSON.h"
#include "platform/base/JSON.h"
#include "platform/base/Strings.h"

namespace QuillmarkKit::TagClipboard {

namespace JSON = platform::JSON;
using platform::Pasteboard;

ClipboardError::ClipboardError(std::int64_t version)
    : std::runtime_error("These tags were copied by a newer version of Quillmark (format " +
                         std::to_string(version) + ")."),
      version_(version) {
}

EncodingError::EncodingError(TagField field)
    : std::runtime_error("The field " + std::string(cliName(field)) +
                         " cannot be copied: its text is not UTF-8.") {
}

namespace {

void requireUTF8(const TagSet& tags) {
  for (const TagField field : allTagFields) {
    const TextMember text = stringKeyPath(field);
    if (text != nullptr && tags.*text && !platform::Strings::isValidUTF8(*(tags.*text)))
      throw EncodingError(field);
  }
}

JSON::Value encode(const Payload& payload) {
  JSON::Object document;
  document.emplace("version", payload.version);
  document.emplace("tags", encodeTagSet(payload.tags));
  JSON::Object unrepresentable;
  for (const auto& [field, value] : payload.unrepresentable) unrepresentable.emplace(rawValue(field), value);
  if (!unrepresentable.empty()) document.emplace("uncarried", std::move(unrepresentable));
  return document;
}

/// Returns the descriptions in the member "uncarried". Ignores a member of another kind, which must be
/// another program's.
UnrepresentableValues decodeUnrepresentable(const JSON::Object& members) {
  UnrepresentableValues values;
  const auto member = members.find("uncarried");
  const JSON::Object* object = member != members.end() ? member->second.object() : nullptr;
  if (object == nullptr) return values;
  for (const auto& [name, value] : *object) {
    const auto field = fieldFromRawValue(name);
    if (field && value.string() != nullptr) values.emplace(*field, *value.string());
  }
  return values;
}

Payload decode(const JSON::Value& value) {
  const JSONPlace document{value, JSONPlace::Author::program, {"document"}};
  const JSON::Value& version = document.requireMember("version").value;
  return {.version = JSONPlace{version, JSONPlace::Author::program, {"version"}}.number(),
          .tags = decodeTagSet(document.requireMember("tags").value, "tags"),
          .unrepresentable = decodeUnrepresentable(document.object())};
}

}  // namespace

void copy(const TagSet& tags, Pasteboard& to, const UnrepresentableValues& unrepresentable) {
  requireUTF8(tags);
  const std::string document =
      JSON::print(encode({.version = currentVersion, .tags = tags, .unrepresentable = unrepresentable}),
                  JSON::Layout::compact);
  to.store(document, tags.summary());
}

namespace {

std::optional<Payload> payloadOn(const Pasteboard& from) {
  const auto document = from.document();
  if (!document) return std::nullopt;
  Payload payload = [&] {
    try {
      return decode(JSON::parse(platform::charactersOf(*document)));
    } catch (const JSON::DecodingError& error) {
      throw JSON::DecodingError("The tags on the clipboard cannot be read: " + std::string(error.what()) +
                                ".");
    }
  }();
  if (payload.version > currentVersion) throw ClipboardError::unsupportedPayloadVersion(payload.version);
  return payload;
}

}  // namespace

std::optional<TagSet> paste(const Pasteboard& from) {
  auto payload = payloadOn(from);
  if (!payload) return std::nullopt;
  return std::move(payload->tags);
}

UnrepresentableValues unrepresentableValues(const Pasteboard& from) {
  auto payload = payloadOn(from);
  return payload ? std::move(payload->unrepresentable) : UnrepresentableValues();
}

bool hasTags(const Pasteboard& on) {
  return on.document().has_value();
}

}  // namespace QuillmarkKit::TagClipboard
