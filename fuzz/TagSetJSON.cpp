#include "QuillmarkKit/model/TagSetJSON.h"

#include <optional>

#include "fuzz/FuzzTarget.h"
#include "platform/base/JSON.h"

using namespace QuillmarkKit;
namespace JSON = platform::JSON;

namespace {

/// Returns the result of `read`, or nothing if it throws `JSON::DecodingError`, the only error that is
/// allowed.
template <class Read>
auto unlessMalformed(Read read) -> std::optional<decltype(read())> {
  try {
    return read();
  } catch (const JSON::DecodingError&) {
    return std::nullopt;
  }
}

}  // namespace

void fuzzTarget(const platform::SharedBytes& input) {
  const std::string text(platform::charactersOf(input));
  const auto document = unlessMalformed([&] { return JSON::parse(text); });
  if (!document) return;
  unlessMalformed([&] { return changesIn(text); });
  require(!unlessMalformed([&] { return JSON::parse(text + "]"); }), "a document is all there is");
  const auto tags = unlessMalformed([&] { return decodeTagSet(*document, "tags"); });
  for (const JSON::Layout layout : {JSON::Layout::compact, JSON::Layout::pretty}) {
    const std::string printed = JSON::print(*document, layout);
    require(JSON::print(JSON::parse(printed), layout) == printed, "a printed document is read as it was");
    if (!tags) continue;
    const JSON::Value again = JSON::parse(JSON::print(encodeTagSet(*tags), layout));
    require(decodeTagSet(again, "tags") == *tags, "a printed tag set is read as it was");
  }
  if (!tags) return;
  const TagSet normalized = tags->normalized();
  for (const TagField field : allTagFields) {
    const auto value = normalized.value(field);
    require(!value || (!value->empty() && tags->value(field)), "normalising makes nothing up");
  }
  require(!normalized.summary().empty(), "a summary says something");
}
