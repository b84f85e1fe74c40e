#include "ID3TagEditor/parse/ID3TagToStringAdapter.h"

#include <array>
#include <cstdio>
#include <string_view>

#include "ID3TagEditor/model/FramesInTag.h"

namespace ID3TagEditor {

namespace {

constexpr std::string_view absent = "-";

std::string text(const ID3Tag& tag, FrameName name) {
  const auto* frame = tag.frame<ID3FrameWithStringContent>(name);
  return frame != nullptr ? frame->content() : std::string(absent);
}

/// The one-line form of a frame of the given class.
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

/// The text between double quotes, as a string literal would hold it.
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

struct Line {
  std::string_view label;
  FrameName name;
  std::string (*value)(const ID3Tag& tag, FrameName name);
};

constexpr auto number = described<ID3FrameWithIntegerContent>;

constexpr std::array beforeLists = std::to_array<Line>({
    {"artist", FrameName::artist, text},
    {"composer", FrameName::composer, text},
    {"conductor", FrameName::conductor, text},
    {"contentGrouping", FrameName::contentGrouping, text},
    {"copyright", FrameName::copyright, text},
    {"encodedBy", FrameName::encodedBy, text},
    {"encoderSettings", FrameName::encoderSettings, text},
    {"fileOwner", FrameName::fileOwner, text},
    {"lyricist", FrameName::lyricist, text},
    {"mixArtist", FrameName::mixArtist, text},
    {"publisher", FrameName::publisher, text},
    {"subtitle", FrameName::subtitle, text},
    {"albumArtist", FrameName::albumArtist, text},
    {"title", FrameName::title, text},
    {"trackPosition", FrameName::trackPosition, position},
    {"discPosition", FrameName::discPosition, position},
    {"album", FrameName::album, text},
    {"recordingDateTime", FrameName::recordingDateTime, described<ID3FrameRecordingDateTime>},
    {"recordingYear", FrameName::recordingYear, number},
    {"recordingDayMonth", FrameName::recordingDayMonth, described<ID3FrameRecordingDayMonth>},
    {"recordingHourMinute", FrameName::recordingHourMinute, described<ID3FrameRecordingHourMinute>},
    {"genre", FrameName::genre, genre},
});

constexpr std::array behindLists = std::to_array<Line>({
    {"iTunesGrouping", FrameName::iTunesGrouping, text},
    {"iTunesMovementIndex", FrameName::iTunesMovementIndex, number},
    {"iTunesMovementCount", FrameName::iTunesMovementCount, number},
    {"iTunesMovementName", FrameName::iTunesMovementName, text},
    {"iTunesPodcastCategory", FrameName::iTunesPodcastCategory, text},
    {"iTunesPodcastDescription", FrameName::iTunesPodcastDescription, text},
    {"iTunesPodcastID", FrameName::iTunesPodcastID, text},
    {"iTunesPodcastKeywords", FrameName::iTunesPodcastKeywords, text},
});

template <std::size_t Count>
std::string lines(const ID3Tag& tag, const std::array<Line, Count>& table) {
  std::string rendered;
  for (const Line& line : table) {
    rendered.append("\n- ").append(line.label).append(": ").append(line.value(tag, line.name));
  }
  return rendered;
}

std::string pictureList(const ID3Tag& tag) {
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

std::string localizedList(const ID3Tag& tag, FrameName (*nameFor)(ID3FrameContentLanguage)) {
  std::string rendered;
  for (const auto* frame : localizedFramesIn(tag, nameFor)) {
    rendered.append("\nlanguage: ").append(caseName(frame->language()));
    rendered.append("\ncontentDescription: ").append(frame->contentDescription());
    rendered.append("\ncontent: ").append(frame->content()).append("\n");
  }
  return rendered;
}

}  // namespace

std::string ID3TagToStringAdapter::adapt(const ID3Tag& id3Tag) const {
  return "ID3Tag:\n- size: " + std::to_string(id3Tag.properties.size) +
         "\n- version: " + std::string(caseName(id3Tag.properties.version)) + lines(id3Tag, beforeLists) +
         "\n- attachedPicture:" + pictureList(id3Tag) +
         "\n- unsynchronisedLyrics:" + localizedList(id3Tag, FrameName::unsynchronizedLyrics) +
         "\n- comments:" + localizedList(id3Tag, FrameName::comment) + lines(id3Tag, behindLists);
}

std::string ID3Tag::debugDescription() const {
  return ID3TagToStringAdapter().adapt(*this);
}

}  // namespace ID3TagEditor
