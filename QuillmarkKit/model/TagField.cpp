#include "QuillmarkKit/model/TagField.h"

#include "QuillmarkKit/model/TagSet.h"
#include "platform/Text.h"

namespace QuillmarkKit {

namespace {

struct FieldRow {
  std::string_view rawValue;
  std::string_view cliName;
  std::string_view displayName;
  TextMember text = nullptr;
  NumberMember number = nullptr;
};

constexpr std::array<FieldRow, tagFieldCount> table{{
    {"title", "title", "Title", &TagSet::title},
    {"artist", "artist", "Artist", &TagSet::artist},
    {"album", "album", "Album", &TagSet::album},
    {"albumArtist", "album-artist", "Album Artist", &TagSet::albumArtist},
    {"composer", "composer", "Composer", &TagSet::composer},
    {"conductor", "conductor", "Conductor", &TagSet::conductor},
    {"grouping", "grouping", "Grouping", &TagSet::grouping},
    {"publisher", "publisher", "Publisher", &TagSet::publisher},
    {"copyright", "copyright", "Copyright", &TagSet::copyright},
    {"lyricist", "lyricist", "Lyricist", &TagSet::lyricist},
    {"subtitle", "subtitle", "Subtitle", &TagSet::subtitle},
    {"encodedBy", "encoded-by", "Encoded By", &TagSet::encodedBy},
    {"initialKey", "initial-key", "Initial Key", &TagSet::initialKey},
    {"fileOwner", "file-owner", "File Owner", &TagSet::fileOwner},
    {"genre", "genre", "Genre", &TagSet::genre},
    {"comment", "comment", "Comment", &TagSet::comment},
    {"lyrics", "lyrics", "Lyrics", &TagSet::lyrics},
    {"year", "year", "Year", nullptr, &TagSet::year},
    {"bpm", "bpm", "BPM", nullptr, &TagSet::bpm},
    {"trackNumber", "track-number", "Track Number", nullptr, &TagSet::trackNumber},
    {"trackTotal", "track-total", "Track Total", nullptr, &TagSet::trackTotal},
    {"discNumber", "disc-number", "Disc Number", nullptr, &TagSet::discNumber},
    {"discTotal", "disc-total", "Disc Total", nullptr, &TagSet::discTotal},
    {"artwork", "artwork", "Artwork"},
}};

const FieldRow& rowOf(TagField field) {
  return table[static_cast<std::size_t>(field)];
}

/// "album-artist" as "albumArtist". Only ASCII letters matter: no field's name holds others.
std::string joinedHumps(std::string_view hyphenated) {
  std::string joined;
  for (const std::string_view piece : platform::Text::split(hyphenated, '-')) {
    const bool isFirst = joined.empty();
    joined += piece;
    char& hump = joined[joined.size() - piece.size()];
    if (!isFirst && hump >= 'a' && hump <= 'z') hump = static_cast<char>(hump - 'a' + 'A');
  }
  return joined;
}

}  // namespace

std::string_view rawValue(TagField field) {
  return rowOf(field).rawValue;
}

std::string_view cliName(TagField field) {
  return rowOf(field).cliName;
}

std::string_view displayName(TagField field) {
  return rowOf(field).displayName;
}

std::optional<TagField> fieldFromRawValue(std::string_view raw) {
  for (const TagField field : allTagFields) {
    if (rawValue(field) == raw) return field;
  }
  return std::nullopt;
}

std::optional<TagField> fieldFromCliName(std::string_view name) {
  if (const auto field = fieldFromRawValue(name)) return field;
  return fieldFromRawValue(joinedHumps(name));
}

TextMember stringKeyPath(TagField field) {
  return rowOf(field).text;
}

NumberMember integerKeyPath(TagField field) {
  return rowOf(field).number;
}

}  // namespace QuillmarkKit
