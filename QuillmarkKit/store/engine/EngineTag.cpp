#include "QuillmarkKit/store/engine/EngineTag.h"

#include <algorithm>
#include <array>

#include "ID3TagEditor/ID3TagEditor.h"
#include "ID3TagEditor/model/TagBuilders.h"
#include "ID3TagEditor/parse/ContentReader.h"
#include "QuillmarkKit/store/engine/RawFrames.h"
#include "platform/base/Strings.h"

namespace QuillmarkKit {

using namespace ID3TagEditor;

namespace {

using Reader = ID3TagContentReader;
using Builder = ID32v3TagBuilder;
using enum ID3FrameContentLanguage;

/// Returns the case's name as words: "Classic Rock" for "classicRock".
std::string humanize(ID3Genre genre) {
  std::string words;
  for (const char character : caseName(genre)) {
    if (character >= 'A' && character <= 'Z') words += ' ';
    words += words.empty() ? platform::Strings::toASCIIUpper(character) : character;
  }
  return words;
}

TagSet::Text genreText(const std::optional<Genre>& genre) {
  if (!genre) return std::nullopt;
  if (genre->description) return genre->description;
  if (genre->identifier) return humanize(*genre->identifier);
  return std::nullopt;
}

void readYear(const Reader& reader, TagSet& tags) {
  tags.year = reader.recordingYear();
  if (tags.year) return;
  if (const auto moment = reader.recordingDateTime()) tags.year = moment->year;
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

void writeArtwork(const TagSet& tags, Builder& builder) {
  if (!tags.artwork) return;
  constexpr auto cover = ID3PictureType::frontCover;
  const auto format =
      tags.artwork->format == Artwork::Format::png ? ID3PictureFormat::png : ID3PictureFormat::jpeg;
  builder.attachedPicture(cover, ID3FrameAttachedPicture(tags.artwork->data, cover, format));
}

/// The operations that read and write the fields of one frame.
struct Conversion {
  TagFields fields;
  /// The tag set, or the builder, must not contain any of these fields yet.
  void (*read)(const Reader& reader, TagSet& tags);
  void (*write)(const TagSet& tags, Builder& builder);
};

template <auto member, auto query, auto setter>
constexpr Conversion text(TagField field) {
  return {{field},
          [](const Reader& reader, TagSet& tags) { tags.*member = (reader.*query)(); },
          [](const TagSet& tags, Builder& builder) {
            if (tags.*member) (builder.*setter)(ID3FrameWithStringContent(*(tags.*member)));
          }};
}

/// Does not write a total without its number, which no frame can contain.
template <auto number, auto total, auto query, auto setter>
constexpr Conversion position(TagFields fields) {
  return {fields,
          [](const Reader& reader, TagSet& tags) {
            const auto found = (reader.*query)();
            if (!found) return;
            tags.*number = found->position;
            tags.*total = found->total;
          },
          [](const TagSet& tags, Builder& builder) {
            if (tags.*number) (builder.*setter)(ID3FramePartOfTotal(*(tags.*number), tags.*total));
          }};
}

template <auto member, auto query, auto setter>
constexpr Conversion localized(TagField field) {
  return {{field},
          [](const Reader& reader, TagSet& tags) { tags.*member = firstContent((reader.*query)()); },
          [](const TagSet& tags, Builder& builder) {
            if (tags.*member) (builder.*setter)(eng, ID3FrameWithLocalizedContent(eng, "", *(tags.*member)));
          }};
}

constexpr std::array conversions = std::to_array<Conversion>({
    text<&TagSet::title, &Reader::title, &Builder::title>(TagField::title),
    text<&TagSet::artist, &Reader::artist, &Builder::artist>(TagField::artist),
    text<&TagSet::album, &Reader::album, &Builder::album>(TagField::album),
    text<&TagSet::albumArtist, &Reader::albumArtist, &Builder::albumArtist>(TagField::albumArtist),
    text<&TagSet::composer, &Reader::composer, &Builder::composer>(TagField::composer),
    text<&TagSet::conductor, &Reader::conductor, &Builder::conductor>(TagField::conductor),
    text<&TagSet::grouping, &Reader::contentGrouping, &Builder::contentGrouping>(TagField::grouping),
    text<&TagSet::publisher, &Reader::publisher, &Builder::publisher>(TagField::publisher),
    text<&TagSet::copyright, &Reader::copyright, &Builder::copyright>(TagField::copyright),
    text<&TagSet::lyricist, &Reader::lyricist, &Builder::lyricist>(TagField::lyricist),
    text<&TagSet::subtitle, &Reader::subtitle, &Builder::subtitle>(TagField::subtitle),
    text<&TagSet::encodedBy, &Reader::encodedBy, &Builder::encodedBy>(TagField::encodedBy),
    text<&TagSet::initialKey, &Reader::initialKey, &Builder::initialKey>(TagField::initialKey),
    text<&TagSet::fileOwner, &Reader::fileOwner, &Builder::fileOwner>(TagField::fileOwner),
    {{TagField::genre},
     [](const Reader& reader, TagSet& tags) { tags.genre = genreText(reader.genre()); },
     [](const TagSet& tags, Builder& builder) {
       if (tags.genre) builder.genre(ID3FrameGenre(std::nullopt, tags.genre));
     }},
    localized<&TagSet::comment, &Reader::comments, &Builder::comment>(TagField::comment),
    localized<&TagSet::lyrics, &Reader::unsynchronizedLyrics, &Builder::unsynchronisedLyrics>(TagField::lyrics),
    {{TagField::year},
     readYear,
     [](const TagSet& tags, Builder& builder) {
       if (tags.year) builder.recordingYear(ID3FrameWithIntegerContent(tags.year));
     }},
    {{TagField::bpm},
     [](const Reader& reader, TagSet& tags) { tags.bpm = reader.beatsPerMinute(); },
     [](const TagSet& tags, Builder& builder) {
       if (tags.bpm) builder.beatsPerMinute(ID3FrameWithIntegerContent(tags.bpm));
     }},
    position<&TagSet::trackNumber, &TagSet::trackTotal, &Reader::trackPosition, &Builder::trackPosition>(
        {TagField::trackNumber, TagField::trackTotal}),
    position<&TagSet::discNumber, &TagSet::discTotal, &Reader::discPosition, &Builder::discPosition>(
        {TagField::discNumber, TagField::discTotal}),
    {{TagField::artwork},
     [](const Reader& reader, TagSet& tags) { tags.artwork = artworkAmong(reader.attachedPictures()); },
     writeArtwork},
});

static_assert(std::ranges::all_of(allTagFields,
                                  [](TagField field) {
                                    return std::ranges::count_if(conversions, [&](const Conversion& row) {
                                             return row.fields.contains(field);
                                           }) == 1;
                                  }),
              "each field has one row");

}  // namespace

TagSet tagSetFrom(const ID3Tag& tag) {
  const Reader reader(tag);
  TagSet tags;
  for (const Conversion& row : conversions) row.read(reader, tags);
  tags.normalize();
  return tags;
}

ID3Tag makeTag(const TagSet& from) {
  Builder builder;
  for (const Conversion& row : conversions) row.write(from, builder);
  return builder.build();
}

EngineTag::EngineTag(const ::ID3TagEditor::ID3TagEditor& editor, MP3File& file)
    : editor_(editor), file_(file), length_(editor.tagLength(file.handle())) {
  if (!length_) return;
  const auto tag = editor.read(file.tagBytes().slice(0, static_cast<std::size_t>(*length_)));
  if (tag) tags_ = tagSetFrom(*tag);
}

NewTag EngineTag::changedBy(const TagSet& wanted) const {
  const ID3Frames::UnmanagedFrames carried(file_.tagBytes());
  if (wanted.isEmpty() && !carried.empty()) {
    return {.bytes = ID3Frames::tagData(carried, file_.path()), .audioStart = carried.audioStart()};
  }
  ID3Tag tag = makeTag(wanted);
  platform::Bytes bytes = editor_.tagData(tag, carried.size());
  if (!carried.empty()) ID3Frames::appendTo(bytes, carried, file_.path());
  return {.bytes = std::move(bytes), .audioStart = length_.value_or(0)};
}

}  // namespace QuillmarkKit
