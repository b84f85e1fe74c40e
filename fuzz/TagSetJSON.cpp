#include "QuillmarkKit/model/TagSetJSON.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>

#include "fuzz/FuzzTarget.h"
#include "platform/base/JSON.h"

using namespace QuillmarkKit;
namespace JSON = platform::JSON;

namespace {

constexpr std::array layouts{JSON::Layout::compact, JSON::Layout::pretty};

/// Returns the result of `read`, or nothing if it throws `JSON::DecodingError`, the only error that is
/// allowed.
template <class Read>
auto unlessMalformed(Read read) {
  using Result = decltype(read());
  try {
    return std::optional<Result>(read());
  } catch (const JSON::DecodingError&) {
    return std::optional<Result>();
  }
}

/// Whether both change the same file in the same way.
bool isSameChange(const FileChange& a, const FileChange& b) {
  return a.file == b.file && a.tags == b.tags && a.selected == b.selected;
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
  require(std::ranges::equal(again, *changes, isSameChange), "a printed document changes the same");
}

}  // namespace

void fuzzTarget(const platform::SharedBytes& input) {
  const auto document = unlessMalformed([&] { return JSON::parse(platform::charactersOf(input)); });
  if (!document) return;
  requireSameChanges(platform::charactersOf(input));
  const std::string andMore = std::string(platform::charactersOf(input)) + "]";
  require(!unlessMalformed([&] { return JSON::parse(andMore); }), "a document is all there is");
  for (const JSON::Layout layout : layouts) {
    const std::string printed = JSON::print(*document, layout);
    require(JSON::print(JSON::parse(printed), layout) == printed, "a printed document is read as it was");
  }

  const auto tags = unlessMalformed([&] { return decodeTagSet(*document, "tags"); });
  if (!tags) return;
  for (const JSON::Layout layout : layouts) {
    const std::string printed = JSON::print(encodeTagSet(*tags), layout);
    require(decodeTagSet(JSON::parse(printed), "tags") == *tags, "a printed tag set is read as it was");
  }
  const TagSet normalized = tags->normalized();
  for (const TagField field : allTagFields) {
    const auto value = normalized.value(field);
    require(!value || (!value->empty() && tags->value(field)), "normalising makes nothing up");
  }
  require(!normalized.summary().empty(), "a summary says something");
}
