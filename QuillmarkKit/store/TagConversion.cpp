#include "QuillmarkKit/store/TagConversion.h"

#include <algorithm>
#include <array>

namespace QuillmarkKit {

using namespace ID3TagEditor;

namespace {

using Reader = ID3TagContentReader;

struct TextFieldRow {
  TagSet::Text TagSet::*member;
  std::optional<std::string> (Reader::*query)() const;
  ID32v3TagBuilder& (ID32v3TagBuilder::*setter)(ID3FrameWithStringContent);
};

constexpr std::array textFields = std::to_array<TextFieldRow>({
    {&TagSet::title, &Reader::title, &ID32v3TagBuilder::title},
    {&TagSet::artist, &Reader::artist, &ID32v3TagBuilder::artist},
    {&TagSet::album, &Reader::album, &ID32v3TagBuilder::album},
    {&TagSet::albumArtist, &Reader::albumArtist, &ID32v3TagBuilder::albumArtist},
    {&TagSet::composer, &Reader::composer, &ID32v3TagBuilder::composer},
    {&TagSet::conductor, &Reader::conductor, &ID32v3TagBuilder::conductor},
    {&TagSet::grouping, &Reader::contentGrouping, &ID32v3TagBuilder::contentGrouping},
    {&TagSet::publisher, &Reader::publisher, &ID32v3TagBuilder::publisher},
    {&TagSet::copyright, &Reader::copyright, &ID32v3TagBuilder::copyright},
    {&TagSet::lyricist, &Reader::lyricist, &ID32v3TagBuilder::lyricist},
    {&TagSet::subtitle, &Reader::subtitle, &ID32v3TagBuilder::subtitle},
    {&TagSet::encodedBy, &Reader::encodedBy, &ID32v3TagBuilder::encodedBy},
    {&TagSet::initialKey, &Reader::initialKey, &ID32v3TagBuilder::initialKey},
    {&TagSet::fileOwner, &Reader::fileOwner, &ID32v3TagBuilder::fileOwner},
});

/// The case's name as words: "classicRock" as "Classic Rock".
std::string humanize(ID3Genre genre) {
  std::string words;
  for (const char character : caseName(genre)) {
    if (character >= 'A' && character <= 'Z') words += ' ';
    words += words.empty() ? static_cast<char>(character - 'a' + 'A') : character;
  }
  return words;
}

TagSet::Text genreText(const std::optional<Genre>& genre) {
  if (!genre) return std::nullopt;
  if (genre->description) return genre->description;
  if (genre->identifier) return humanize(*genre->identifier);
  return std::nullopt;
}

TagSet::Number year(const Reader& reader) {
  if (const auto recordingYear = reader.recordingYear()) return recordingYear;
  const auto moment = reader.recordingDateTime();
  return moment ? moment->year : std::nullopt;
}

TagSet::Text firstContent(const std::vector<LocalizedContent>& contents) {
  return contents.empty() ? std::nullopt : std::optional(contents.front().content);
}

std::optional<Artwork> artworkAmong(const std::vector<AttachedPicture>& pictures) {
  if (pictures.empty()) return std::nullopt;
  const auto cover = std::ranges::find(pictures, ID3PictureType::frontCover, &AttachedPicture::type);
  const AttachedPicture& chosen = cover != pictures.end() ? *cover : pictures.front();
  return Artwork{
      .data = chosen.picture,
      .format = chosen.format == ID3PictureFormat::png ? Artwork::Format::png : Artwork::Format::jpeg};
}

}  // namespace

TagSet tagSetFrom(const ID3Tag& tag) {
  const Reader reader(tag);
  TagSet tags;
  for (const TextFieldRow& row : textFields) tags.*row.member = (reader.*row.query)();
  tags.bpm = reader.beatsPerMinute();
  tags.year = year(reader);
  tags.genre = genreText(reader.genre());
  if (const auto track = reader.trackPosition()) {
    tags.trackNumber = track->position;
    tags.trackTotal = track->total;
  }
  if (const auto disc = reader.discPosition()) {
    tags.discNumber = disc->position;
    tags.discTotal = disc->total;
  }
  tags.comment = firstContent(reader.comments());
  tags.lyrics = firstContent(reader.unsynchronizedLyrics());
  tags.artwork = artworkAmong(reader.attachedPictures());
  tags.normalize();
  return tags;
}

ID3Tag makeTag(const TagSet& from) {
  using enum ID3FrameContentLanguage;
  ID32v3TagBuilder builder;
  for (const TextFieldRow& row : textFields) {
    if (from.*row.member) (builder.*row.setter)(ID3FrameWithStringContent(*(from.*row.member)));
  }
  if (from.year) builder.recordingYear(ID3FrameWithIntegerContent(from.year));
  if (from.bpm) builder.beatsPerMinute(ID3FrameWithIntegerContent(from.bpm));
  if (from.genre) builder.genre(ID3FrameGenre(std::nullopt, from.genre));
  if (from.trackNumber) builder.trackPosition(ID3FramePartOfTotal(*from.trackNumber, from.trackTotal));
  if (from.discNumber) builder.discPosition(ID3FramePartOfTotal(*from.discNumber, from.discTotal));
  if (from.comment) builder.comment(eng, ID3FrameWithLocalizedContent(eng, "", *from.comment));
  if (from.lyrics) builder.unsynchronisedLyrics(eng, ID3FrameWithLocalizedContent(eng, "", *from.lyrics));
  if (from.artwork) {
    const auto format =
        from.artwork->format == Artwork::Format::png ? ID3PictureFormat::png : ID3PictureFormat::jpeg;
    builder.attachedPicture(ID3PictureType::frontCover,
                            ID3FrameAttachedPicture(from.artwork->data, ID3PictureType::frontCover, format));
  }
  return builder.build();
}

}  // namespace QuillmarkKit
