#pragma once

#include <optional>
#include <string>
#include <vector>

#include "ID3TagEditor/model/ID3Tag.h"
#include "ID3TagEditor/model/Values.h"

namespace ID3TagEditor {

/// A typed view of a tag: plain values instead of frames. A value is absent if the tag has no frame of that
/// name, or one of another class. The tag must outlive the reader.
class ID3TagContentReader {
 public:
  explicit ID3TagContentReader(const ID3Tag& id3Tag) : id3Tag_(id3Tag) {}
  explicit ID3TagContentReader(const ID3Tag&&) = delete;

  using OptionalText = std::optional<std::string>;
  OptionalText title() const { return text(FrameName::title); }
  OptionalText album() const { return text(FrameName::album); }
  OptionalText albumArtist() const { return text(FrameName::albumArtist); }
  OptionalText artist() const { return text(FrameName::artist); }
  OptionalText composer() const { return text(FrameName::composer); }
  OptionalText conductor() const { return text(FrameName::conductor); }
  OptionalText contentGrouping() const { return text(FrameName::contentGrouping); }
  OptionalText copyright() const { return text(FrameName::copyright); }
  OptionalText encodedBy() const { return text(FrameName::encodedBy); }
  OptionalText encoderSettings() const { return text(FrameName::encoderSettings); }
  OptionalText fileOwner() const { return text(FrameName::fileOwner); }
  OptionalText lyricist() const { return text(FrameName::lyricist); }
  OptionalText mixArtist() const { return text(FrameName::mixArtist); }
  OptionalText publisher() const { return text(FrameName::publisher); }
  OptionalText subtitle() const { return text(FrameName::subtitle); }
  OptionalText originalFilename() const { return text(FrameName::originalFilename); }
  OptionalText initialKey() const { return text(FrameName::initialKey); }
  OptionalText iTunesGrouping() const { return text(FrameName::iTunesGrouping); }
  OptionalText iTunesMovementName() const { return text(FrameName::iTunesMovementName); }
  OptionalText iTunesPodcastCategory() const { return text(FrameName::iTunesPodcastCategory); }
  OptionalText iTunesPodcastDescription() const { return text(FrameName::iTunesPodcastDescription); }
  OptionalText iTunesPodcastID() const { return text(FrameName::iTunesPodcastID); }
  OptionalText iTunesPodcastKeywords() const { return text(FrameName::iTunesPodcastKeywords); }

  OptionalInteger beatsPerMinute() const { return integer(FrameName::beatsPerMinute); }
  OptionalInteger lengthInMilliseconds() const { return integer(FrameName::lengthInMilliseconds); }
  OptionalInteger sizeInBytes() const { return integer(FrameName::sizeInBytes); }
  OptionalInteger recordingYear() const { return integer(FrameName::recordingYear); }
  OptionalInteger iTunesMovementIndex() const { return integer(FrameName::iTunesMovementIndex); }
  OptionalInteger iTunesMovementCount() const { return integer(FrameName::iTunesMovementCount); }

  std::optional<Genre> genre() const;
  std::optional<PartOfTotal> discPosition() const { return position(FrameName::discPosition); }
  std::optional<PartOfTotal> trackPosition() const { return position(FrameName::trackPosition); }
  std::optional<DayMonth> recordingDayMonth() const;
  std::optional<HourMinute> recordingHourMinute() const;
  std::optional<DateTime> recordingDateTime() const;

  // The lists are in the order of the picture types and of the languages, not in that of the file.
  std::vector<AttachedPicture> attachedPictures() const;
  std::vector<LocalizedContent> unsynchronizedLyrics() const;
  std::vector<LocalizedContent> comments() const;

 private:
  template <class Frame>
  const Frame* frame(NameOf<Frame> name) const {
    return id3Tag_.frame<Frame>(name.name);
  }
  OptionalText text(NameOf<ID3FrameWithStringContent> name) const;
  OptionalInteger integer(NameOf<ID3FrameWithIntegerContent> name) const;
  std::optional<PartOfTotal> position(NameOf<ID3FramePartOfTotal> name) const;
  std::vector<LocalizedContent> localized(FrameName::Kind kind) const;

  const ID3Tag& id3Tag_;
};

}  // namespace ID3TagEditor
