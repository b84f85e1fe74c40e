#include "QuillmarkKit/model/TagSetJSON.h"

#include <optional>

#include "fuzz/FuzzTarget.h"
#include "platform/base/JSON.h"
#include "platform/base/Strings.h"

using namespace QuillmarkKit;
namespace JSON = platform::JSON;
namespace Strings = platform::Strings;

namespace {

/// Returns the result of `read`, or nothing if it throws `JSON::DecodingError`, the only error that is
/// allowed.
auto unlessMalformed(auto read) -> std::optional<decltype(read())> {
  try {
    return read();
  } catch (const JSON::DecodingError&) {
    return std::nullopt;
  }
}

void checkText(const std::string& text) {
  require(Strings::isValidUTF8(text), "decoded text is UTF-8");
  require(Strings::fromUTF8Lossily(text) == text, "valid text needs no repair");
  require(Strings::fromUTF16(Strings::toUTF16WithMark(text).value()) == text, "UTF-16 is read as it was");
  if (const auto latin1 = Strings::toLatin1(text)) {
    require(Strings::fromLatin1(*latin1) == text, "Latin-1 is read as it was");
    require(latin1->size() == Strings::characterCount(text), "a byte stands for each character");
  }
  for (const auto trim : {Strings::trimmingWhiteSpace, Strings::trimmingBlanks, Strings::trimmingNulls}) {
    const std::string_view trimmed = trim(text);
    require(text.find(trimmed) != std::string::npos, "trimming takes off the ends alone");
    require(Strings::isValidUTF8(trimmed) && trim(trimmed) == trimmed, "trimming leaves nothing to trim");
  }
}

}  // namespace

void fuzzTarget(const platform::SharedBytes& input) {
  const std::string text(platform::charactersOf(input));
  checkText(Strings::fromLatin1(input));
  checkText(Strings::fromUTF8Lossily(text));
  const bool isText = Strings::isValidUTF8(text);
  require(Strings::fromUTF8(input).has_value() == isText, "all of UTF-8 is read");
  require(Strings::toUTF16WithMark(text).has_value() == isText, "and nothing else written");
  if (const auto utf16 = Strings::fromUTF16(input)) checkText(*utf16);
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
  if (tags) require(!tags->normalized().summary().empty(), "a summary says something");
}
