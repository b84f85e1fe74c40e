#include "quillmark/Report.h"

#include <zlib.h>

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/FileError.h"
#include "platform/base/Strings.h"
#include "quillmark/Console.h"
#include "quillmark/Hints.h"

namespace quillmark {

using QuillmarkKit::TagApplier;
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

/// Returns a change of tags for people: for each field that differs a line with its old value, a line with
/// its new value, or both. An artwork that stays beside the new one is marked. Long texts are shortened, and
/// control characters are made visible.
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

/// Returns the change of a file that was, or would be, rewritten.
const TagApplier::Change* changeIn(const TagApplier::Outcome& outcome) {
  if (const auto* updated = std::get_if<TagApplier::Updated>(&outcome)) return updated;
  return std::get_if<TagApplier::WouldUpdate>(&outcome);
}

}  // namespace

void Report::add(const TagApplier::Result& result, std::string_view given) {
  const std::string name =
      arguments_.has(options::paths) ? std::string(given) : platform::lastPathComponent(result.url);
  if (const auto* failure = std::get_if<TagApplier::Failed>(&result.outcome)) {
    ++failed_;
    console_.printError("failed    " + name + ": " + failure->message);
    if (!hasNotedFolder_ && !arguments_.has(options::recursive) && console_.wantsNotes()) {
      const std::string hint = folderHint(result.url);
      hasNotedFolder_ = !hint.empty();
      if (hasNotedFolder_) console_.printNote(hint);
    }
    return;
  }
  const bool isUnchanged = std::holds_alternative<TagApplier::Unchanged>(result.outcome);
  const TagApplier::Change* change = changeIn(result.outcome);
  if (change != nullptr) {
    console_.printNote(result.url, change->losses);
    console_.printNote(result.url, change->note);
    if (change->before && !source_.empty())
      removed_.insert(change->before->populatedFields().without(change->tags.populatedFields()));
  }
  ++(isUnchanged ? unchanged_ : changed_);
  if (isUnchanged && arguments_.has(options::quiet)) return;
  console_.write((isUnchanged                       ? "unchanged "
                  : arguments_.has(options::dryRun) ? "would     "
                                                    : "updated   ") +
                 console_.shown(name) + "\n");
  if (change != nullptr && arguments_.has(options::diff))
    console_.write(differences(*change->before, change->tags, change->keepsArtwork));
  console_.flush();
}

/// Prints a note about the fields that were removed because the source does not have them.
void Report::noteRemovedFields() {
  std::vector<std::string> fields;
  for (const TagField field : QuillmarkKit::allTagFields) {
    if (removed_.contains(field)) fields.push_back("no " + nameInSentence(field));
  }
  const std::size_t count = fields.size();
  if (count == 0) return;
  std::string names = " has " + fields.front();
  for (std::size_t i = 1; i < count; ++i) names += (i + 1 < count ? ", " : " and ") + fields[i];
  const std::string_view verb = arguments_.has(options::dryRun) ? "would be" : count > 1 ? "are" : "is";
  console_.printNote(source_ + names + ": " + (count > 1 ? "they " : "it ") + std::string(verb) +
                     " removed from the other files. --fields leaves " + (count > 1 ? "them" : "it") +
                     " alone.");
}

int Report::finish(platform::ReplacementRun& run, std::size_t notReached) {
  bool isSynchronised = true;
  try {
    run.synchronise();
  } catch (const std::exception& error) {
    isSynchronised = false;
    console_.printError(error.what());
  }
  noteRemovedFields();
  console_.write((arguments_.has(options::dryRun) ? "\nwould change " : "\nchanged ") +
                 std::to_string(changed_) + ", unchanged " + std::to_string(unchanged_) + ", failed " +
                 std::to_string(failed_) + "\n");
  if (notReached > 0) {
    console_.printError(std::to_string(notReached) +
                        (notReached == 1 ? " file was not reached." : " files were not reached."));
  }
  return failed_ > 0 || !isSynchronised ? 2 : 0;
}

}  // namespace quillmark
