#include "QuillmarkKit/model/TagSetJSON.h"

#include <algorithm>
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

void requireSameChanges(std::string_view document) {
  const auto changes = unlessMalformed([&] { return changesIn(document); });
  if (!changes) return;
  JSON::Object files;
  for (const FileChange& change : *changes) {
    JSON::Value fields = encodeTagSet(change.tags);
    for (const TagField field : allTagFields) {
      if (change.selected.contains(field)) fields.object()->try_emplace(std::string(rawValue(field)));
    }
    files.emplace(change.file, std::move(fields));
  }
  const auto again = changesIn(JSON::print(files, JSON::Layout::pretty));
  const auto isSame = [](const FileChange& a, const FileChange& b) {
    return a.file == b.file && a.tags == b.tags && a.selected == b.selected;
  };
  require(std::ranges::equal(again, *changes, isSame), "a printed document changes the same");
}

}  // namespace

void fuzzTarget(const platform::SharedBytes& input) {
  const std::string text(platform::charactersOf(input));
  const auto document = unlessMalformed([&] { return JSON::parse(text); });
  if (!document) return;
  requireSameChanges(text);
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
