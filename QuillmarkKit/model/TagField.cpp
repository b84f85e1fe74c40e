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
  std::string_view frame;
  TextMember text = nullptr;
  NumberMember number = nullptr;
};

constexpr std::array<FieldRow, tagFieldCount> table{{
    {TagField::title, "title", "title", "Title", "TIT2", &TagSet::title},
    {TagField::artist, "artist", "artist", "Artist", "TPE1", &TagSet::artist},
    {TagField::album, "album", "album", "Album", "TALB", &TagSet::album},
    {TagField::albumArtist, "albumArtist", "album-artist", "Album Artist", "TPE2", &TagSet::albumArtist},
    {TagField::composer, "composer", "composer", "Composer", "TCOM", &TagSet::composer},
    {TagField::conductor, "conductor", "conductor", "Conductor", "TPE3", &TagSet::conductor},
    {TagField::grouping, "grouping", "grouping", "Grouping", "TIT1", &TagSet::grouping},
    {TagField::publisher, "publisher", "publisher", "Publisher", "TPUB", &TagSet::publisher},
    {TagField::copyright, "copyright", "copyright", "Copyright", "TCOP", &TagSet::copyright},
    {TagField::lyricist, "lyricist", "lyricist", "Lyricist", "TEXT", &TagSet::lyricist},
    {TagField::subtitle, "subtitle", "subtitle", "Subtitle", "TIT3", &TagSet::subtitle},
    {TagField::encodedBy, "encodedBy", "encoded-by", "Encoded By", "TENC", &TagSet::encodedBy},
    {TagField::initialKey, "initialKey", "initial-key", "Initial Key", "TKEY", &TagSet::initialKey},
    {TagField::fileOwner, "fileOwner", "file-owner", "File Owner", "TOWN", &TagSet::fileOwner},
    {TagField::genre, "genre", "genre", "Genre", "TCON", &TagSet::genre},
    {TagField::comment, "comment", "comment", "Comment", "COMM", &TagSet::comment},
    {TagField::lyrics, "lyrics", "lyrics", "Lyrics", "USLT", &TagSet::lyrics},
    {TagField::year, "year", "year", "Year", "TYER", nullptr, &TagSet::year},
    {TagField::bpm, "bpm", "bpm", "BPM", "TBPM", nullptr, &TagSet::bpm},
    {TagField::trackNumber, "trackNumber", "track-number", "Track Number", "TRCK", nullptr,
     &TagSet::trackNumber},
    {TagField::trackTotal, "trackTotal", "track-total", "Track Total", "TRCK", nullptr, &TagSet::trackTotal},
    {TagField::discNumber, "discNumber", "disc-number", "Disc Number", "TPOS", nullptr, &TagSet::discNumber},
    {TagField::discTotal, "discTotal", "disc-total", "Disc Total", "TPOS", nullptr, &TagSet::discTotal},
    {TagField::artwork, "artwork", "artwork", "Artwork", "APIC"},
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

std::string_view frameIdentifier(TagField field) {
  return rowOf(field).frame;
}

bool isDateFrame(std::string_view identifier) {
  constexpr std::array<std::string_view, 4> dateFrames{"TDRC", "TYER", "TDAT", "TIME"};
  return std::ranges::find(dateFrames, identifier) != dateFrames.end();
}

bool isFieldFrame(std::string_view identifier) {
  return std::ranges::find(table, identifier, &FieldRow::frame) != table.end();
}

bool isFrameOf(TagField field, std::string_view identifier) {
  return field == TagField::year ? isDateFrame(identifier) : identifier == frameIdentifier(field);
}

TextMember stringKeyPath(TagField field) {
  return rowOf(field).text;
}

NumberMember integerKeyPath(TagField field) {
  return rowOf(field).number;
}

}  // namespace QuillmarkKit
