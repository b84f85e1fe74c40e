#include "QuillmarkKit/transfer/TagClipboard.h"

#include "QuillmarkKit/model/JSONDecoding.h"
#include "QuillmarkKit/model/TagSetJSON.h"
#include "platform/JSON.h"
#include "platform/Text.h"

namespace QuillmarkKit::TagClipboard {

namespace JSON = platform::JSON;
using platform::Pasteboard;

ClipboardError::ClipboardError(std::int64_t version)
    : version_(version),
      description_("These tags were copied by a newer version of Quillmark (format " +
                   std::to_string(version) + ").") {
}

EncodingError::EncodingError(TagField field)
    : field_(field),
      description_("The field " + std::string(cliName(field)) + " cannot be copied: its text is not UTF-8.") {
}

namespace {

void requireUTF8(const TagSet& tags) {
  for (const TagField field : allTagFields) {
    const TextMember text = stringKeyPath(field);
    if (text && tags.*text && !platform::Text::isValidUTF8(*(tags.*text))) throw EncodingError(field);
  }
}

JSON::Value encode(const Payload& payload) {
  JSON::Object document;
  document.emplace("version", payload.version);
  document.emplace("tags", encodeTagSet(payload.tags));
  return document;
}

Payload decode(const JSON::Value& document) {
  const JSON::Object& members = requireObject(document, "document");
  return {.version = decodeNumber(requireMember(members, "document", "version"), "version"),
          .tags = decodeTagSet(requireMember(members, "document", "tags"), "tags")};
}

}  // namespace

void copy(const TagSet& tags, Pasteboard& to) {
  requireUTF8(tags);
  const std::string document =
      JSON::print(encode({.version = currentVersion, .tags = tags}), JSON::Layout::compact);
  // Not cleared first: until the new content is complete, `paste` returns the old.
  to.declareTypes({std::string(pasteboardType), std::string(Pasteboard::stringType)});
  to.setData(platform::bytesOf(document), pasteboardType);
  to.setString(tags.summary(), Pasteboard::stringType);
}

std::optional<TagSet> paste(const Pasteboard& from) {
  const auto document = from.data(pasteboardType);
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
  return std::move(payload.tags);
}

bool hasTags(const Pasteboard& on) {
  return on.data(pasteboardType).has_value();
}

}  // namespace QuillmarkKit::TagClipboard
