#include "quillmark/Differences.h"

#include <zlib.h>

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/base/Strings.h"
#include "quillmark/Console.h"

namespace quillmark {

using QuillmarkKit::TagField;
using QuillmarkKit::TagSet;
namespace Strings = platform::Strings;

namespace {

constexpr std::size_t mostCharacters = 60;
constexpr std::string_view ellipsis = "…";

/// A field's old and new value, in the form in which they are printed.
struct Sides {
  std::optional<std::string> before;
  std::optional<std::string> after;
};

/// Returns at most so many characters from the front of the text.
std::string_view front(std::string_view text, std::size_t count) {
  std::size_t length = 0;
  while (count-- > 0 && length < text.size()) length += Strings::firstCharacter(text.substr(length)).length;
  return text.substr(0, length);
}

/// Returns one line with the text from `start` on.
template <class Show>
std::string excerpt(std::string_view text, std::size_t start, Show show) {
  const std::string_view rest = text.substr(start);
  std::string_view part = rest.substr(0, rest.find('\n'));
  if (Strings::characterCount(part) > mostCharacters) part = front(part, mostCharacters - 1);
  std::string line(start > 0 ? ellipsis : "");
  return line.append(show(part)).append(part.size() < rest.size() ? ellipsis : "");
}

/// Returns the position from which two texts are printed: shortly before their first difference, in the same
/// line.
std::size_t startOfDifference(std::string_view a, std::string_view b) {
  constexpr std::size_t lead = 20;
  auto at = static_cast<std::size_t>(std::ranges::mismatch(a, b).in1 - a.begin());
  const std::size_t line = a.substr(0, at).rfind('\n') + 1;
  at = std::max(line, at - std::min(at, lead));
  const auto isInsideCharacter = [&] { return (static_cast<unsigned char>(a[at]) & 0xC0U) == 0x80; };
  while (at < a.size() && isInsideCharacter()) ++at;
  return at;
}

Sides textSides(const TagSet::Text& before, const TagSet::Text& after) {
  const auto shown = [](const TagSet::Text& text, std::size_t start, auto show) {
    return text ? std::optional(excerpt(*text, start, show)) : std::nullopt;
  };
  Sides sides{shown(before, 0, visibleLine), shown(after, 0, visibleLine)};
  if (sides.before != sides.after) return sides;
  const std::size_t start = startOfDifference(*before, *after);
  return {shown(before, start, Strings::visible), shown(after, start, Strings::visible)};
}

/// Returns the CRC-32 of the bytes, as in ZIP and PNG files, in eight hexadecimal digits.
std::string checksum(platform::ByteView bytes) {
  const auto sum = static_cast<std::uint32_t>(::crc32_z(0, bytes.data(), bytes.size()));
  std::string digits;
  for (int shift = 28; shift >= 0; shift -= 4) digits += "0123456789abcdef"[sum >> shift & 0xFU];
  return digits;
}

Sides pictureSides(const TagSet& before, const TagSet& after) {
  Sides sides{before.value(TagField::artwork), after.value(TagField::artwork)};
  if (before.artwork && after.artwork && before.artwork->data.size() == after.artwork->data.size()) {
    sides.before->append(", ").append(checksum(before.artwork->data));
    sides.after->append(", ").append(checksum(after.artwork->data));
  }
  return sides;
}

}  // namespace

std::string differences(const TagSet& before, const TagSet& after, bool keepsArtwork) {
  static const std::size_t width =
      displayName(std::ranges::max(QuillmarkKit::allTagFields, {}, [](TagField field) {
        return displayName(field).size();
      })).size();
  const QuillmarkKit::TagFields fields = before.differing(after);
  std::string lines;
  for (const TagField field : QuillmarkKit::allTagFields) {
    if (!fields.contains(field)) continue;
    const Sides sides = dispatch(
        field, [&](QuillmarkKit::TextMember text) { return textSides(before.*text, after.*text); },
        [&](QuillmarkKit::NumberMember) {
          return Sides{before.value(field), after.value(field)};
        },
        [&] { return pictureSides(before, after); });
    const auto add = [&](std::string_view sign, const std::optional<std::string>& value) {
      if (!value) return;
      std::string label(displayName(field));
      label.resize(width, ' ');
      lines.append("    ").append(sign).append(" ").append(label).append("  ").append(*value).append("\n");
    };
    if (field == TagField::artwork && keepsArtwork) {
      add("+", sides.after);
      add("=", sides.before ? std::optional(*sides.before + " (stays, after the new one)") : std::nullopt);
      continue;
    }
    add("-", sides.before);
    add("+", sides.after);
  }
  return lines;
}

}  // namespace quillmark
