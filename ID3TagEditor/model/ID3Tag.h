#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "ID3TagEditor/model/Enumerations.h"
#include "ID3TagEditor/model/FrameTables.h"
#include "ID3TagEditor/model/Values.h"
#include "platform/base/Bytes.h"

namespace ID3TagEditor {

/// The base class of all frames. Records where a frame was read from.
class ID3Frame {
 public:
  virtual ~ID3Frame() = default;

  /// Returns the fields in one line, for debugging.
  virtual std::string debugDescription() const = 0;

  /// The identifier that the frame had on disk; absent if the caller built the frame.
  std::optional<std::string> id3Identifier;
  /// The length of the frame on disk in bytes, header included; absent if the caller built the frame.
  std::optional<std::size_t> size;

 protected:
  ID3Frame() = default;
  ID3Frame(const ID3Frame&) = default;
  ID3Frame(ID3Frame&&) = default;
  ID3Frame& operator=(const ID3Frame&) = default;
  ID3Frame& operator=(ID3Frame&&) = default;
};

/// A frame that holds one text (ID3v2.3.0 §4.2).
class ID3FrameWithStringContent : public ID3Frame {
 public:
  static constexpr FrameContent heldContent = FrameContent::string;

  explicit ID3FrameWithStringContent(std::string content) : content_(std::move(content)) {}
  const std::string& content() const { return content_; }
  std::string debugDescription() const override { return content_; }

 private:
  std::string content_;
};

/// A comment or lyrics frame: a text in a language (ID3v2.3.0 §4.9, §4.11).
class ID3FrameWithLocalizedContent : public ID3FrameWithStringContent {
 public:
  static constexpr FrameContent heldContent = FrameContent::localized;

  ID3FrameWithLocalizedContent(ID3FrameContentLanguage language, std::string contentDescription,
                               std::string content)
      : ID3FrameWithStringContent(std::move(content)),
        language_(language),
        contentDescription_(std::move(contentDescription)) {}
  ID3FrameContentLanguage language() const { return language_; }
  const std::string& contentDescription() const { return contentDescription_; }
  std::string debugDescription() const override {
    return std::string(rawValue(language_)) + " " + contentDescription_ + " " + content();
  }

 private:
  ID3FrameContentLanguage language_;
  std::string contentDescription_;
};

/// A text frame whose text is a number. The value is absent if the text is not a number.
class ID3FrameWithIntegerContent : public ID3Frame {
 public:
  static constexpr FrameContent heldContent = FrameContent::integer;

  explicit ID3FrameWithIntegerContent(OptionalInteger value) : value_(value) {}
  OptionalInteger value() const { return value_; }
  std::string debugDescription() const override { return spaced({value_}); }

 private:
  OptionalInteger value_;
};

/// A picture (ID3v2.3.0 §4.15).
class ID3FrameAttachedPicture : public ID3Frame {
 public:
  static constexpr FrameContent heldContent = FrameContent::picture;

  ID3FrameAttachedPicture(platform::SharedBytes picture, ID3PictureType type, ID3PictureFormat format)
      : picture_(std::move(picture)), type_(type), format_(format) {}
  const platform::SharedBytes& picture() const { return picture_; }
  ID3PictureType type() const { return type_; }
  ID3PictureFormat format() const { return format_; }
  std::string debugDescription() const override {
    return std::string(caseName(type_)) + " " + std::string(caseName(format_)) + " " +
           std::to_string(picture_.size());
  }
  friend bool operator==(const ID3FrameAttachedPicture& a, const ID3FrameAttachedPicture& b) {
    return a.picture_ == b.picture_ && a.type_ == b.type_ && a.format_ == b.format_;
  }

 private:
  platform::SharedBytes picture_;
  ID3PictureType type_;
  ID3PictureFormat format_;
};

/// The content type: a genre by number, a text, or both (ID3v2.3.0 §4.2.1, "TCON").
class ID3FrameGenre : public ID3Frame {
 public:
  static constexpr FrameContent heldContent = FrameContent::genre;

  ID3FrameGenre(std::optional<ID3Genre> genre, std::optional<std::string> text)
      : identifier(genre), description(std::move(text)) {}
  std::string debugDescription() const override {
    return std::string(identifier ? caseName(*identifier) : "-") + " " + description.value_or("-");
  }
  friend bool operator==(const ID3FrameGenre& a, const ID3FrameGenre& b) {
    return a.identifier == b.identifier && a.description == b.description;
  }

  std::optional<ID3Genre> identifier;
  std::optional<std::string> description;
};

/// A position in a set, with or without the size of the set (ID3v2.3.0 §4.2.1, "TRCK", "TPOS").
class ID3FramePartOfTotal : public ID3Frame {
 public:
  static constexpr FrameContent heldContent = FrameContent::partOfTotal;

  ID3FramePartOfTotal(std::int64_t position, OptionalInteger setSize) : part(position), total(setSize) {}
  std::string debugDescription() const override { return spaced({part, total}); }
  friend bool operator==(const ID3FramePartOfTotal& a, const ID3FramePartOfTotal& b) {
    return a.part == b.part && a.total == b.total;
  }

  std::int64_t part;
  OptionalInteger total;
};

/// The recording time of a v2.4 tag (ID3v2.4.0 frames §4.2.5, "TDRC").
class ID3FrameRecordingDateTime : public ID3Frame {
 public:
  static constexpr FrameContent heldContent = FrameContent::dateTime;

  explicit ID3FrameRecordingDateTime(RecordingDateTime recordingDateTime)
      : recordingDateTime_(recordingDateTime) {}
  const RecordingDateTime& recordingDateTime() const { return recordingDateTime_; }
  std::string debugDescription() const override { return description(recordingDateTime_); }

 private:
  RecordingDateTime recordingDateTime_;
};

/// The day of the recording without its year (ID3v2.3.0 §4.2.1, "TDAT").
class ID3FrameRecordingDayMonth : public ID3Frame {
 public:
  static constexpr FrameContent heldContent = FrameContent::dayMonth;

  ID3FrameRecordingDayMonth(OptionalInteger day, OptionalInteger month) : day_(day), month_(month) {}
  OptionalInteger day() const { return day_; }
  OptionalInteger month() const { return month_; }
  std::string debugDescription() const override { return spaced({day_, month_}); }

 private:
  OptionalInteger day_;
  OptionalInteger month_;
};

/// The time of day of the recording (ID3v2.3.0 §4.2.1, "TIME").
class ID3FrameRecordingHourMinute : public ID3Frame {
 public:
  static constexpr FrameContent heldContent = FrameContent::hourMinute;

  ID3FrameRecordingHourMinute(OptionalInteger hour, OptionalInteger minute) : hour_(hour), minute_(minute) {}
  OptionalInteger hour() const { return hour_; }
  OptionalInteger minute() const { return minute_; }
  std::string debugDescription() const override { return spaced({hour_, minute_}); }

 private:
  OptionalInteger hour_;
  OptionalInteger minute_;
};

/// A name of frames of class `Frame`. Any other name does not compile.
template <class Frame>
struct NameOf {
  consteval NameOf(FrameName::Kind kind) : name(kind) {
    if (kindOf(kind).content != Frame::heldContent) throw "no name of such frames";
  }

  FrameName name;
};

struct ID3TagProperties {
  /// The length of the tag in bytes without its 10-byte header, as it was last read or written.
  std::uint32_t size = 0;
  ID3Version version;
};

/// The frames of a tag by name. Copies of a tag share the frames.
using Frames = std::map<FrameName, std::shared_ptr<const ID3Frame>>;

/// One ID3v2 tag in memory.
class ID3Tag {
 public:
  explicit ID3Tag(ID3Version version, Frames initialFrames = {})
      : properties{.version = version}, frames(std::move(initialFrames)) {}

  /// Returns the whole tag as a text of many lines, for debugging.
  std::string debugDescription() const;

  /// Returns the frame of that name, or null if there is none or if it is of another class.
  template <class Frame>
  const Frame* frame(FrameName name) const {
    const auto found = frames.find(name);
    return found != frames.end() ? dynamic_cast<const Frame*>(found->second.get()) : nullptr;
  }

  /// Returns the frames of that class from name `first` to name `last`, both included, in the order of their
  /// names.
  template <class Frame>
  std::vector<const Frame*> framesBetween(FrameName first, FrameName last) const {
    std::vector<const Frame*> found;
    for (auto at = frames.lower_bound(first), end = frames.upper_bound(last); at != end; ++at) {
      if (const auto* frame = dynamic_cast<const Frame*>(at->second.get())) found.push_back(frame);
    }
    return found;
  }

  ID3TagProperties properties;
  Frames frames;
};

/// Renders a whole tag as a text of many lines, for debugging.
class ID3TagToStringAdapter {
 public:
  std::string adapt(const ID3Tag& id3Tag) const;
};

// Access to the frames of which a tag can have several.

/// Returns the pictures in the order of the picture types.
inline std::vector<const ID3FrameAttachedPicture*> picturesIn(const ID3Tag& tag) {
  return tag.framesBetween<ID3FrameAttachedPicture>(FrameName::attachedPicture(allPictureTypes.front()),
                                                    FrameName::attachedPicture(allPictureTypes.back()));
}

/// Returns the lyrics or the comments in the order of the languages. `kind` must be `lyricsKind` or
/// `commentKind`.
inline std::vector<const ID3FrameWithLocalizedContent*> localizedFramesIn(const ID3Tag& tag,
                                                                          FrameName::Kind kind) {
  return tag.framesBetween<ID3FrameWithLocalizedContent>(FrameName::localized(kind, allLanguages.front()),
                                                         FrameName::localized(kind, allLanguages.back()));
}

}  // namespace ID3TagEditor
