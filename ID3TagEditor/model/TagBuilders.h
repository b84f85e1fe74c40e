#pragma once

#include <memory>
#include <type_traits>
#include <utility>

#include "ID3TagEditor/model/ID3Tag.h"

// One builder for each version. A builder has a setter for each frame that has an identifier in its version,
// so a tag with a frame in it can be written. A setter replaces the frame that was set under the same name
// before, and returns the builder.
namespace ID3TagEditor {

class TagBuilder {
 public:
  virtual ~TagBuilder() = default;
  /// Returns a new tag with the frames set so far. The builder keeps them.
  virtual ID3Tag build() const = 0;
};

template <class Builder>
class CommonFrameSetters : public TagBuilder {
 public:
  using Text = ID3FrameWithStringContent;
  using Integer = ID3FrameWithIntegerContent;
  using Localized = ID3FrameWithLocalizedContent;

  Builder& title(Text frame) { return set(FrameName::title, std::move(frame)); }
  Builder& album(Text frame) { return set(FrameName::album, std::move(frame)); }
  Builder& albumArtist(Text frame) { return set(FrameName::albumArtist, std::move(frame)); }
  Builder& artist(Text frame) { return set(FrameName::artist, std::move(frame)); }
  Builder& composer(Text frame) { return set(FrameName::composer, std::move(frame)); }
  Builder& conductor(Text frame) { return set(FrameName::conductor, std::move(frame)); }
  Builder& contentGrouping(Text frame) { return set(FrameName::contentGrouping, std::move(frame)); }
  Builder& copyright(Text frame) { return set(FrameName::copyright, std::move(frame)); }
  Builder& encodedBy(Text frame) { return set(FrameName::encodedBy, std::move(frame)); }
  Builder& encoderSettings(Text frame) { return set(FrameName::encoderSettings, std::move(frame)); }
  Builder& lyricist(Text frame) { return set(FrameName::lyricist, std::move(frame)); }
  Builder& mixArtist(Text frame) { return set(FrameName::mixArtist, std::move(frame)); }
  Builder& publisher(Text frame) { return set(FrameName::publisher, std::move(frame)); }
  Builder& subtitle(Text frame) { return set(FrameName::subtitle, std::move(frame)); }
  Builder& initialKey(Text frame) { return set(FrameName::initialKey, std::move(frame)); }
  Builder& originalFilename(Text frame) { return set(FrameName::originalFilename, std::move(frame)); }
  Builder& beatsPerMinute(Integer frame) { return set(FrameName::beatsPerMinute, std::move(frame)); }
  Builder& lengthInMilliseconds(Integer frame) {
    return set(FrameName::lengthInMilliseconds, std::move(frame));
  }
  Builder& genre(ID3FrameGenre frame) { return set(FrameName::genre, std::move(frame)); }
  Builder& discPosition(ID3FramePartOfTotal frame) { return set(FrameName::discPosition, std::move(frame)); }
  Builder& trackPosition(ID3FramePartOfTotal frame) {
    return set(FrameName::trackPosition, std::move(frame));
  }

  // The first argument decides the name alone. The picture type or language that is written is the frame's
  // own.
  Builder& attachedPicture(ID3PictureType pictureType, ID3FrameAttachedPicture frame) {
    return setUnder(FrameName::attachedPicture(pictureType), std::move(frame));
  }
  Builder& unsynchronisedLyrics(ID3FrameContentLanguage language, Localized frame) {
    return setUnder(FrameName::unsynchronizedLyrics(language), std::move(frame));
  }
  Builder& comment(ID3FrameContentLanguage language, Localized frame) {
    return setUnder(FrameName::comment(language), std::move(frame));
  }

  ID3Tag build() const override { return ID3Tag(Builder::version, frames_); }

 protected:
  template <class Frame>
  Builder& set(std::type_identity_t<NameOf<Frame, Builder>> name, Frame frame) {
    return setUnder(name.name, std::move(frame));
  }

 private:
  template <class Frame>
  Builder& setUnder(FrameName name, Frame frame) {
    frames_.insert_or_assign(name, std::make_shared<const Frame>(std::move(frame)));
    return static_cast<Builder&>(*this);
  }

  Frames frames_;
};

/// The setters for frames that only v2.2 and v2.3 have.
template <class Builder>
class SizeAndCalendarFrameSetters : public CommonFrameSetters<Builder> {
 public:
  Builder& sizeInBytes(ID3FrameWithIntegerContent frame) {
    return this->set(FrameName::sizeInBytes, std::move(frame));
  }
  Builder& recordingDayMonth(ID3FrameRecordingDayMonth frame) {
    return this->set(FrameName::recordingDayMonth, std::move(frame));
  }
  Builder& recordingHourMinute(ID3FrameRecordingHourMinute frame) {
    return this->set(FrameName::recordingHourMinute, std::move(frame));
  }
  Builder& recordingYear(ID3FrameWithIntegerContent frame) {
    return this->set(FrameName::recordingYear, std::move(frame));
  }
};

/// The setters for frames that only have four-letter identifiers.
template <class Builder, class Base>
class FourLetterFrameSetters : public Base {
 public:
  using typename Base::Integer;
  using typename Base::Text;

  Builder& fileOwner(Text frame) { return this->set(FrameName::fileOwner, std::move(frame)); }
  Builder& iTunesGrouping(Text frame) { return this->set(FrameName::iTunesGrouping, std::move(frame)); }
  Builder& iTunesMovementName(Text frame) {
    return this->set(FrameName::iTunesMovementName, std::move(frame));
  }
  Builder& iTunesMovementIndex(Integer frame) {
    return this->set(FrameName::iTunesMovementIndex, std::move(frame));
  }
  Builder& iTunesMovementCount(Integer frame) {
    return this->set(FrameName::iTunesMovementCount, std::move(frame));
  }
  Builder& iTunesPodcastCategory(Text frame) {
    return this->set(FrameName::iTunesPodcastCategory, std::move(frame));
  }
  Builder& iTunesPodcastDescription(Text frame) {
    return this->set(FrameName::iTunesPodcastDescription, std::move(frame));
  }
  Builder& iTunesPodcastID(Text frame) { return this->set(FrameName::iTunesPodcastID, std::move(frame)); }
  Builder& iTunesPodcastKeywords(Text frame) {
    return this->set(FrameName::iTunesPodcastKeywords, std::move(frame));
  }
};

class ID32v2TagBuilder final : public SizeAndCalendarFrameSetters<ID32v2TagBuilder> {
 public:
  static constexpr ID3Version version = ID3Version::version2;
};

class ID32v3TagBuilder final
    : public FourLetterFrameSetters<ID32v3TagBuilder, SizeAndCalendarFrameSetters<ID32v3TagBuilder>> {
 public:
  static constexpr ID3Version version = ID3Version::version3;
};

class ID32v4TagBuilder final
    : public FourLetterFrameSetters<ID32v4TagBuilder, CommonFrameSetters<ID32v4TagBuilder>> {
 public:
  static constexpr ID3Version version = ID3Version::version4;

  ID32v4TagBuilder& recordingDateTime(ID3FrameRecordingDateTime frame) {
    return set(FrameName::recordingDateTime, std::move(frame));
  }
};

}  // namespace ID3TagEditor
