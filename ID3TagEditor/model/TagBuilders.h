#pragma once

#include <memory>
#include <utility>

#include "ID3TagEditor/model/ID3Tag.h"

namespace ID3TagEditor {

class TagBuilder {
 public:
  virtual ~TagBuilder() = default;
  /// Returns a new tag with the frames set so far. The builder keeps them.
  virtual ID3Tag build() const = 0;
};

/// Builds a tag of one version. A setter replaces the frame that was set under the same name before, and
/// returns the builder. A setter of a frame that has no identifier in the version does not compile, so a tag
/// with a frame in it can be written.
template <ID3Version builtVersion>
class VersionTagBuilder final : public TagBuilder {
 public:
  using Builder = VersionTagBuilder;
  using Text = ID3FrameWithStringContent;
  using Integer = ID3FrameWithIntegerContent;
  using Localized = ID3FrameWithLocalizedContent;
  static constexpr ID3Version version = builtVersion;

  Builder& title(Text frame) { return set<FrameName::title>(std::move(frame)); }
  Builder& album(Text frame) { return set<FrameName::album>(std::move(frame)); }
  Builder& albumArtist(Text frame) { return set<FrameName::albumArtist>(std::move(frame)); }
  Builder& artist(Text frame) { return set<FrameName::artist>(std::move(frame)); }
  Builder& composer(Text frame) { return set<FrameName::composer>(std::move(frame)); }
  Builder& conductor(Text frame) { return set<FrameName::conductor>(std::move(frame)); }
  Builder& contentGrouping(Text frame) { return set<FrameName::contentGrouping>(std::move(frame)); }
  Builder& copyright(Text frame) { return set<FrameName::copyright>(std::move(frame)); }
  Builder& encodedBy(Text frame) { return set<FrameName::encodedBy>(std::move(frame)); }
  Builder& encoderSettings(Text frame) { return set<FrameName::encoderSettings>(std::move(frame)); }
  Builder& lyricist(Text frame) { return set<FrameName::lyricist>(std::move(frame)); }
  Builder& mixArtist(Text frame) { return set<FrameName::mixArtist>(std::move(frame)); }
  Builder& publisher(Text frame) { return set<FrameName::publisher>(std::move(frame)); }
  Builder& subtitle(Text frame) { return set<FrameName::subtitle>(std::move(frame)); }
  Builder& initialKey(Text frame) { return set<FrameName::initialKey>(std::move(frame)); }
  Builder& originalFilename(Text frame) { return set<FrameName::originalFilename>(std::move(frame)); }
  Builder& beatsPerMinute(Integer frame) { return set<FrameName::beatsPerMinute>(std::move(frame)); }
  Builder& lengthInMilliseconds(Integer frame) {
    return set<FrameName::lengthInMilliseconds>(std::move(frame));
  }
  Builder& genre(ID3FrameGenre frame) { return set<FrameName::genre>(std::move(frame)); }
  Builder& discPosition(ID3FramePartOfTotal frame) { return set<FrameName::discPosition>(std::move(frame)); }
  Builder& trackPosition(ID3FramePartOfTotal frame) {
    return set<FrameName::trackPosition>(std::move(frame));
  }
  Builder& sizeInBytes(Integer frame) { return set<FrameName::sizeInBytes>(std::move(frame)); }
  Builder& recordingDayMonth(ID3FrameRecordingDayMonth frame) {
    return set<FrameName::recordingDayMonth>(std::move(frame));
  }
  Builder& recordingHourMinute(ID3FrameRecordingHourMinute frame) {
    return set<FrameName::recordingHourMinute>(std::move(frame));
  }
  Builder& recordingYear(Integer frame) { return set<FrameName::recordingYear>(std::move(frame)); }
  Builder& recordingDateTime(ID3FrameRecordingDateTime frame) {
    return set<FrameName::recordingDateTime>(std::move(frame));
  }
  Builder& fileOwner(Text frame) { return set<FrameName::fileOwner>(std::move(frame)); }
  Builder& iTunesGrouping(Text frame) { return set<FrameName::iTunesGrouping>(std::move(frame)); }
  Builder& iTunesMovementName(Text frame) { return set<FrameName::iTunesMovementName>(std::move(frame)); }
  Builder& iTunesMovementIndex(Integer frame) {
    return set<FrameName::iTunesMovementIndex>(std::move(frame));
  }
  Builder& iTunesMovementCount(Integer frame) {
    return set<FrameName::iTunesMovementCount>(std::move(frame));
  }
  Builder& iTunesPodcastCategory(Text frame) {
    return set<FrameName::iTunesPodcastCategory>(std::move(frame));
  }
  Builder& iTunesPodcastDescription(Text frame) {
    return set<FrameName::iTunesPodcastDescription>(std::move(frame));
  }
  Builder& iTunesPodcastID(Text frame) { return set<FrameName::iTunesPodcastID>(std::move(frame)); }
  Builder& iTunesPodcastKeywords(Text frame) {
    return set<FrameName::iTunesPodcastKeywords>(std::move(frame));
  }

  // The first argument decides the name alone. The picture type or language that is written is the frame's
  // own.
  Builder& attachedPicture(ID3PictureType pictureType, ID3FrameAttachedPicture frame) {
    return set(FrameName::attachedPicture(pictureType), std::move(frame));
  }
  Builder& unsynchronisedLyrics(ID3FrameContentLanguage language, Localized frame) {
    return set(FrameName::unsynchronizedLyrics(language), std::move(frame));
  }
  Builder& comment(ID3FrameContentLanguage language, Localized frame) {
    return set(FrameName::comment(language), std::move(frame));
  }

  ID3Tag build() const override { return ID3Tag(version, frames_); }

 private:
  template <FrameName::Kind kind, class Frame>
  Builder& set(Frame frame) {
    static_assert(kindOf(kind).content == Frame::heldContent, "frames of this name are of another class");
    static_assert(!kindOf(kind).identifierIn(version).empty(), "the version has no such frame");
    return set(FrameName(kind), std::move(frame));
  }
  template <class Frame>
  Builder& set(FrameName name, Frame frame) {
    frames_.insert_or_assign(name, std::make_shared<const Frame>(std::move(frame)));
    return *this;
  }

  Frames frames_;
};

using ID32v2TagBuilder = VersionTagBuilder<ID3Version::version2>;
using ID32v3TagBuilder = VersionTagBuilder<ID3Version::version3>;
using ID32v4TagBuilder = VersionTagBuilder<ID3Version::version4>;

}  // namespace ID3TagEditor
