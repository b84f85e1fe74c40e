#include "QuillmarkKit/model/TagField.h"

#include <algorithm>

#include "QuillmarkKit/model/TagSet.h"
#include "platform/base/Strings.h"

namespace QuillmarkKit {

namespace {

struct FieldRow {
  TagField field;
  std::string_view rawValue;
  std::string_view cliName;
  std::string_view displayName;
  TextMember text = nullptr;
  NumberMember number = nullptr;
};

constexpr std::array<FieldRow, tagFieldCount> table{{
    {TagField::title, "title", "title", "Title", &TagSet::title},
    {TagField::artist, "artist", "artist", "Artist", &TagSet::artist},
    {TagField::album, "album", "album", "Album", &TagSet::album},
    {TagField::albumArtist, "albumArtist", "album-artist", "Album Artist", &TagSet::albumArtist},
    {TagField::composer, "composer", "composer", "Composer", &TagSet::composer},
    {TagField::conductor, "conductor", "conductor", "Conductor", &TagSet::conductor},
    {TagField::grouping, "grouping", "grouping", "Grouping", &TagSet::grouping},
    {TagField::publisher, "publisher", "publisher", "Publisher", &TagSet::publisher},
    {TagField::copyright, "copyright", "copyright", "Copyright", &TagSet::copyright},
    {TagField::lyricist, "lyricist", "lyricist", "Lyricist", &TagSet::lyricist},
    {TagField::subtitle, "subtitle", "subtitle", "Subtitle", &TagSet::subtitle},
    {TagField::encodedBy, "encodedBy", "encoded-by", "Encoded By", &TagSet::encodedBy},
    {TagField::initialKey, "initialKey", "initial-key", "Initial Key", &TagSet::initialKey},
    {TagField::fileOwner, "fileOwner", "file-owner", "File Owner", &TagSet::fileOwner},
    {TagField::genre, "genre", "genre", "Genre", &TagSet::genre},
    {TagField::comment, "comment", "comment", "Comment", &TagSet::comment},
    {TagField::lyrics, "lyrics", "lyrics", "Lyrics", &TagSet::lyrics},
    {TagField::year, "year", "year", "Year", nullptr, &TagSet::year},
    {TagField::bpm, "bpm", "bpm", "BPM", nullptr, &TagSet::bpm},
    {TagField::trackNumber, "trackNumber", "track-number", "Track Number", nullptr, &TagSet::trackNumber},
    {TagField::trackTotal, "trackTotal", "track-total", "Track Total", nullptr, &TagSet::trackTotal},
    {TagField::discNumber, "discNumber", "disc-number", "Disc Number", nullptr, &TagSet::discNumber},
    {TagField::discTotal, "discTotal", "disc-total", "Disc Total", nullptr, &TagSet::discTotal},
    {TagField::artwork, "artwork", "artwork", "Artwork"},
}};

static_assert(std::ranges::equal(table, allTagFields, {}, &FieldRow::field));

const FieldRow& rowOf(TagField field) {
  return table[static_cast<std::size_t>(field)];
}

/// Returns "albumArtist" for "album-artist". Changes only ASCII letters, because field names have no others.
std::string inCamelCase(std::string_view hyphenated) {
  std::string joined;
  for (const std::string_view piece : platform::Strings::split(hyphenated, '-')) {
    const bool isFirst = joined.empty();
    joined += piece;
    char& initial = joined[joined.size() - piece.size()];
    if (!isFirst) initial = platform::Strings::toASCIIUpper(initial);
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

std::string nameInSentence(TagField field) {
  if (field == TagField::bpm) return "BPM";
  std::string name(cliName(field));
  std::ranges::replace(name, '-', ' ');
  return name;
}

std::optional<TagField> fieldFromRawValue(std::string_view raw) {
  for (const TagField field : allTagFields) {
    if (rawValue(field) == raw) return field;
  }
  return std::nullopt;
}

std::optional<TagField> fieldFromCliName(std::string_view name) {
  if (const auto field = fieldFromRawValue(name)) return field;
  return fieldFromRawValue(inCamelCase(name));
}

TextMember stringKeyPath(TagField field) {
  return rowOf(field).text;
}

NumberMember integerKeyPath(TagField field) {
  return rowOf(field).number;
}

}  // namespace QuillmarkKit
