#include <algorithm>
#include <array>
#include <tuple>

#include "ID3TagEditor/ID3TagEditor.h"
#include "ID3TagEditor/model/ID3TagConfiguration.h"
#include "fuzz/FuzzTarget.h"
#include "fuzz/ReadingRules.h"
#include "platform/Text.h"

using namespace ID3TagEditor;
using platform::SharedBytes;

namespace {

const ::ID3TagEditor::ID3TagEditor& editor() {
  static const ::ID3TagEditor::ID3TagEditor editor;
  return editor;
}

/// The input with the tag in the place of its own; nothing when the tag holds nothing that is written.
std::optional<SharedBytes> written(ID3Tag& tag, const SharedBytes& input) {
  try {
    return editor().write(tag, input);
  } catch (const ID3TagEditorError& error) {
    require(error == ID3TagEditorError::invalidTagData, "a tag that was read is too small to be too big");
    return std::nullopt;
  }
}

ID3Tag readBack(const SharedBytes& bytes) {
  auto tag = editor().read(bytes);
  require(tag.has_value(), "a tag that was written is read");
  return std::move(*tag);
}

/// The values that stand in a frame of their own, so that no other frame can change them.
auto plainValues(const ID3Tag& tag) {
  const ID3TagContentReader reader(tag);
  return std::tuple(
      std::array{reader.title(),
                 reader.album(),
                 reader.albumArtist(),
                 reader.artist(),
                 reader.composer(),
                 reader.conductor(),
                 reader.contentGrouping(),
                 reader.copyright(),
                 reader.encodedBy(),
                 reader.encoderSettings(),
                 reader.fileOwner(),
                 reader.lyricist(),
                 reader.mixArtist(),
                 reader.publisher(),
                 reader.subtitle(),
                 reader.originalFilename(),
                 reader.initialKey(),
                 reader.iTunesGrouping(),
                 reader.iTunesMovementName(),
                 reader.iTunesPodcastCategory(),
                 reader.iTunesPodcastDescription(),
                 reader.iTunesPodcastID(),
                 reader.iTunesPodcastKeywords()},
      std::array{reader.beatsPerMinute(), reader.lengthInMilliseconds(), reader.sizeInBytes(),
                 reader.recordingYear(), reader.iTunesMovementIndex(), reader.iTunesMovementCount()},
      reader.discPosition(), reader.trackPosition());
}

auto structuredValues(const ID3Tag& tag) {
  const ID3TagContentReader reader(tag);
  auto dayMonth = reader.recordingDayMonth();
  auto hourMinute = reader.recordingHourMinute();
  auto dateTime = reader.recordingDateTime();
  // What is not known in full is not written.
  if (dayMonth && !(dayMonth->day && dayMonth->month)) dayMonth.reset();
  if (hourMinute && !(hourMinute->hour && hourMinute->minute)) hourMinute.reset();
  if (dateTime && !dateTime->year) dateTime.reset();
  return std::tuple(reader.genre(), dayMonth, hourMinute, dateTime, reader.attachedPictures(),
                    reader.unsynchronizedLyrics(), reader.comments());
}

}  // namespace

void fuzzTarget(const SharedBytes& input) {
  std::optional<ID3Tag> tag;
  try {
    tag = editor().read(input);
  } catch (const ID3TagEditorError& error) {
    require(error == ID3TagEditorError::corruptedFile, "the only error of reading bytes is a corrupted file");
  }
  if (!tag) return;
  require(tag->properties.size + ID3TagConfiguration::headerSize() <= input.size(), "the tag lies inside");
  require(platform::Text::isValidUTF8(tag->debugDescription()), "the texts of a tag are UTF-8");
  const auto audio = input.view().subspan(tag->properties.size + ID3TagConfiguration::headerSize());

  const auto whole = written(*tag, input);
  if (!whole) return;
  require(platform::charactersOf(*whole).ends_with(platform::charactersOf(audio)), "the audio stays");
  require(plainValues(readBack(*whole)) == plainValues(*tag), "texts, numbers and positions come back");

  std::erase_if(tag->frames, [](const auto& entry) { return fuzz::isReadOtherwise(*entry.second); });
  const auto first = written(*tag, input);
  if (!first) return;
  ID3Tag back = readBack(*first);
  require(plainValues(back) == plainValues(*tag), "texts, numbers and positions come back");
  require(structuredValues(back) == structuredValues(*tag), "all other values come back");
  require(written(back, *first) == first, "a later round gives the same bytes");
}
