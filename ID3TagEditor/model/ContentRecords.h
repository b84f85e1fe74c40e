#pragma once

#include <optional>
#include <string>

#include "ID3TagEditor/model/ID3FrameContentLanguage.h"
#include "ID3TagEditor/model/ID3Genre.h"
#include "ID3TagEditor/model/ID3PictureFormat.h"
#include "ID3TagEditor/model/ID3PictureType.h"
#include "ID3TagEditor/model/RecordingDateTime.h"
#include "platform/base/Bytes.h"

// The contents of a tag's frames as plain values.
namespace ID3TagEditor {

struct Genre {
  std::optional<ID3Genre> identifier;
  std::optional<std::string> description;

  bool operator==(const Genre&) const = default;
};

struct PartOfTotal {
  std::int64_t position;
  OptionalInteger total;

  bool operator==(const PartOfTotal&) const = default;
};

struct DayMonth {
  OptionalInteger day;
  OptionalInteger month;

  bool operator==(const DayMonth&) const = default;
};

struct HourMinute {
  OptionalInteger hour;
  OptionalInteger minute;

  bool operator==(const HourMinute&) const = default;
};

struct DateTime {
  OptionalInteger day;
  OptionalInteger month;
  OptionalInteger year;
  OptionalInteger hour;
  OptionalInteger minute;

  bool operator==(const DateTime&) const = default;
};

struct AttachedPicture {
  platform::SharedBytes picture;
  ID3PictureFormat format;
  ID3PictureType type;

  bool operator==(const AttachedPicture&) const = default;
};

struct LocalizedContent {
  ID3FrameContentLanguage language;
  std::string contentDescription;
  std::string content;

  bool operator==(const LocalizedContent&) const = default;
};

}  // namespace ID3TagEditor
