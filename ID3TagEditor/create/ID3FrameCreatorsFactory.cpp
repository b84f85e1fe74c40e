#include "ID3TagEditor/create/ID3FrameCreatorsFactory.h"

#include <algorithm>
#include <iterator>

#include "ID3TagEditor/create/ID3AttachedPicturesFramesCreator.h"
#include "ID3TagEditor/create/ID3FrameContentCreator.h"
#include "ID3TagEditor/create/ID3FramesWithLocalizedContentCreator.h"
#include "ID3TagEditor/create/StructuredFrameCreators.h"

namespace ID3TagEditor {

namespace {

using Latin1 = ID3FrameFromStringContentCreatorWithISO88591EncodingFactory;
using UTF16 = ID3FrameFromStringContentCreatorWithUTF16EncodingFactory;

/// Texts are written in UTF-16.
std::unique_ptr<ID3FrameCreator> string(FrameName name, FrameType type) {
  return std::make_unique<ID3FrameContentCreator>(
      std::make_unique<FrameFromStringContentAdapter>(UTF16::make()), name, type);
}

/// Numbers are written in ISO-8859-1.
std::unique_ptr<ID3FrameCreator> integer(FrameName name, FrameType type) {
  return std::make_unique<ID3FrameContentCreator>(
      std::make_unique<FrameFromIntegerContentAdapter>(Latin1::make()), name, type);
}

void moveOnto(FrameCreators& creators, FrameCreators more) {
  std::ranges::move(more, std::back_inserter(creators));
}

}  // namespace

FrameCreators ID3RecordingTimesFrameCreatorsFactory::make() {
  FrameCreators creators;
  creators.push_back(integer(FrameName::recordingYear, FrameType::recordingYear));
  creators.push_back(std::make_unique<ID3RecordingDayMonthFrameCreator>(Latin1::make()));
  creators.push_back(std::make_unique<ID3RecordingHourMinuteFrameCreator>(Latin1::make()));
  creators.push_back(std::make_unique<ID3RecordingDateTimeFrameCreator>(
      std::make_unique<ID3TimestampCreator>(), Latin1::make()));
  return creators;
}

FrameCreators ID3iTunesFrameCreatorsFactory::make() {
  FrameCreators creators;
  creators.push_back(string(FrameName::iTunesGrouping, FrameType::iTunesGrouping));
  creators.push_back(string(FrameName::iTunesMovementName, FrameType::iTunesMovementName));
  creators.push_back(integer(FrameName::iTunesMovementIndex, FrameType::iTunesMovementIndex));
  creators.push_back(integer(FrameName::iTunesMovementCount, FrameType::iTunesMovementCount));
  creators.push_back(string(FrameName::iTunesPodcastCategory, FrameType::iTunesPodcastCategory));
  creators.push_back(string(FrameName::iTunesPodcastDescription, FrameType::iTunesPodcastDescription));
  creators.push_back(string(FrameName::iTunesPodcastID, FrameType::iTunesPodcastID));
  creators.push_back(string(FrameName::iTunesPodcastKeywords, FrameType::iTunesPodcastKeywords));
  return creators;
}

FrameCreators ID3FrameCreatorsFactory::make() {
  FrameCreators creators;
  creators.push_back(string(FrameName::album, FrameType::album));
  creators.push_back(string(FrameName::albumArtist, FrameType::albumArtist));
  creators.push_back(string(FrameName::artist, FrameType::artist));
  creators.push_back(string(FrameName::title, FrameType::title));
  creators.push_back(std::make_unique<ID3GenreFrameCreator>(Latin1::make()));
  creators.push_back(std::make_unique<ID3TrackPositionFrameCreator>(Latin1::make()));
  creators.push_back(ID3AttachedPicturesFramesCreatorFactory::make());
  creators.push_back(string(FrameName::composer, FrameType::composer));
  creators.push_back(string(FrameName::conductor, FrameType::conductor));
  creators.push_back(string(FrameName::contentGrouping, FrameType::contentGrouping));
  creators.push_back(string(FrameName::copyright, FrameType::copyright));
  creators.push_back(string(FrameName::encodedBy, FrameType::encodedBy));
  creators.push_back(string(FrameName::encoderSettings, FrameType::encoderSettings));
  creators.push_back(string(FrameName::fileOwner, FrameType::fileOwner));
  creators.push_back(string(FrameName::lyricist, FrameType::lyricist));
  creators.push_back(string(FrameName::mixArtist, FrameType::mixArtist));
  creators.push_back(string(FrameName::publisher, FrameType::publisher));
  creators.push_back(string(FrameName::subtitle, FrameType::subtitle));
  creators.push_back(string(FrameName::initialKey, FrameType::initialKey));
  creators.push_back(integer(FrameName::beatsPerMinute, FrameType::beatsPerMinute));
  creators.push_back(std::make_unique<ID3DiscPositionFrameCreator>(Latin1::make()));
  creators.push_back(string(FrameName::originalFilename, FrameType::originalFilename));
  creators.push_back(integer(FrameName::lengthInMilliseconds, FrameType::lengthInMilliseconds));
  creators.push_back(integer(FrameName::sizeInBytes, FrameType::sizeInBytes));
  creators.push_back(ID3FramesWithLocalizedContentCreatorFactory::make());
  moveOnto(creators, ID3RecordingTimesFrameCreatorsFactory::make());
  moveOnto(creators, ID3iTunesFrameCreatorsFactory::make());
  return creators;
}

}  // namespace ID3TagEditor
