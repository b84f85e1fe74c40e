// The text of a whole tag, for debugging.
#include <algorithm>
#include <array>
#include <cstdio>
#include <iterator>
#include <string_view>

#include "ID3TagEditor/model/FrameTables.h"
#include "ID3TagEditor/model/ID3Tag.h"
#include "platform/base/EnumerationTable.h"

namespace ID3TagEditor {

namespace {

constexpr std::string_view absent = "-";

std::string text(const ID3Tag& tag, FrameName name) {
  const auto* frame = tag.frame<ID3FrameWithStringContent>(name);
  return frame != nullptr ? frame->content() : std::string(absent);
}

/// Returns the one-line form of a frame of the given class, or a hyphen if the tag has none.
template <class Frame>
std::string described(const ID3Tag& tag, FrameName name) {
  const auto* frame = tag.frame<Frame>(name);
  return frame != nullptr ? frame->debugDescription() : std::string(absent);
}

std::string position(const ID3Tag& tag, FrameName name) {
  const auto* frame = tag.frame<ID3FramePartOfTotal>(name);
  if (frame == nullptr) return std::string(absent);
  return std::to_string(frame->part) + " of " +
         (frame->total ? std::to_string(*frame->total) : std::string(absent));
}

/// Returns the text as a string literal: in double quotes, with special characters escaped.
std::string quoted(std::string_view content) {
  std::string literal = "\"";
  for (const char character : content) {
    static constexpr std::string_view special = "\"\\\n\r\t";
    static constexpr std::string_view letters = "\"\\nrt";
    const std::size_t found = special.find(character);
    if (character == '\0') {
      literal += "\\0";
    } else if (found != std::string_view::npos) {
      literal.append({'\\', letters[found]});
    } else if (static_cast<unsigned char>(character) < 0x20 || character == 0x7F) {
      std::array<char, 8> escape{};
      std::snprintf(escape.data(), escape.size(), "\\u{%02X}", static_cast<unsigned>(character));
      literal += escape.data();
    } else {
      literal += character;
    }
  }
  return literal + "\"";
}

std::string genre(const ID3Tag& tag, FrameName name) {
  const auto* frame = tag.frame<ID3FrameGenre>(name);
  if (frame == nullptr) return std::string(absent);
  const auto optional = [](const std::string& value) { return "Optional(" + value + ")"; };
  const std::string identifier =
      frame->identifier ? optional("ID3TagEditor.ID3Genre." + std::string(caseName(*frame->identifier)))
                        : "nil";
  return identifier + " - " + (frame->description ? optional(quoted(*frame->description)) : "nil");
}

std::string pictureList(const ID3Tag& tag, FrameName /*name*/) {
  std::string rendered;
  for (const auto* frame : picturesIn(tag)) {
    rendered.append("\n")
        .append(caseName(frame->type()))
        .append(" ")
        .append(caseName(frame->format()))
        .append("\n");
  }
  return rendered;
}

std::string localizedList(const ID3Tag& tag, FrameName name) {
  std::string rendered;
  for (const auto* frame : localizedFramesIn(tag, name.kind())) {
    rendered.append("\nlanguage: ").append(caseName(frame->language()));
    rendered.append("\ncontentDescription: ").append(frame->contentDescription());
    rendered.append("\ncontent: ").append(frame->content()).append("\n");
  }
  return rendered;
}

struct Rendering {
  FrameContent content;
  std::string_view separator;
  std::string (*value)(const ID3Tag& tag, FrameName name);
};

constexpr std::array renderings = std::to_array<Rendering>({
    {FrameContent::string, " ", text},
    {FrameContent::integer, " ", described<ID3FrameWithIntegerContent>},
    {FrameContent::partOfTotal, " ", position},
    {FrameContent::genre, " ", genre},
    {FrameContent::dayMonth, " ", described<ID3FrameRecordingDayMonth>},
    {FrameContent::hourMinute, " ", described<ID3FrameRecordingHourMinute>},
    {FrameContent::dateTime, " ", described<ID3FrameRecordingDateTime>},
    {FrameContent::picture, "", pictureList},
    {FrameContent::localized, "", localizedList},
});
static_assert(platform::hasARowForEachCase(renderings, &Rendering::content, lastFrameContent));

constexpr std::size_t lineCount = std::ranges::max(frameKinds, {}, &FrameKind::line).line;

/// The type of frame that each line shows.
constexpr std::array<FrameType, lineCount> lines = [] {
  std::array<FrameType, lineCount> types{};
  types.fill(FrameType::invalid);
  for (const FrameKind& kind : frameKinds) {
    if (kind.line > 0) types[kind.line - 1] = kind.type;
  }
  return types;
}();
static_assert(std::ranges::find(lines, FrameType::invalid) == lines.end(), "no line is left out");
static_assert(std::ranges::count_if(frameKinds, [](const FrameKind& kind) { return kind.line > 0; }) ==
                  std::ssize(lines),
              "no line is two kinds'");

}  // namespace

std::string ID3TagToStringAdapter::adapt(const ID3Tag& id3Tag) const {
  std::string rendered = "ID3Tag:\n- size: " + std::to_string(id3Tag.properties.size) + "\n- version: ";
  rendered += caseName(id3Tag.properties.version);
  for (const FrameType type : lines) {
    const FrameKind& kind = kindOf(type);
    const Rendering& rendering = renderings[static_cast<std::size_t>(kind.content)];
    rendered.append("\n- ").append(kind.label()).append(":").append(rendering.separator);
    rendered += rendering.value(id3Tag, kind.name);
  }
  return rendered;
}

std::string ID3Tag::debugDescription() const {
  return ID3TagToStringAdapter().adapt(*this);
}

}  // namespace ID3TagEditor
