#include "QuillmarkKit/model/TagSetJSON.h"

#include <array>
#include <optional>
#include <string>

#include "fuzz/FuzzTarget.h"
#include "platform/base/JSON.h"

using namespace QuillmarkKit;
namespace JSON = platform::JSON;

namespace {

constexpr std::array layouts{JSON::Layout::compact, JSON::Layout::pretty};

/// What reading gives, or nothing where it throws the one error that it may.
template <class Read>
auto unlessMalformed(Read read) {
  using Result = decltype(read());
  try {
    return std::optional<Result>(read());
  } catch (const JSON::DecodingError&) {
    return std::optional<Result>();
  }
}

}  // namespace

void fuzzTarget(const platform::SharedBytes& input) {
  const auto document = unlessMalformed([&] { return JSON::parse(platform::charactersOf(input)); });
  if (!document) return;
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
