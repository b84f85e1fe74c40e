#pragma once

#include <memory>

#include "ID3TagEditor/create/FrameHeaderCreation.h"
#include "ID3TagEditor/create/ID3FrameCreator.h"
#include "ID3TagEditor/create/StringToBytesAdapters.h"
#include "ID3TagEditor/model/ID3Frames.h"

namespace ID3TagEditor {

class LocalizedFrameCreator {
 public:
  virtual ~LocalizedFrameCreator() = default;
  virtual void createFrame(const ID3FrameWithLocalizedContent& frame, FrameType frameType, ID3Version version,
                           platform::Bytes& output) const = 0;
};

/// Writes one comment or lyrics frame in UTF-16, without a terminator after the content (ID3v2.3.0 §4.9,
/// §4.11). An unknown language is written as "XXX", the code that ID3v2.4.0 structure §4 reserves for it.
class ID3LocalizedFrameCreator : public LocalizedFrameCreator {
 public:
  ID3LocalizedFrameCreator(std::unique_ptr<FrameHeaderCreator> frameHeaderCreator,
                           std::unique_ptr<PaddingAdder> paddingAdder)
      : frameHeaderCreator_(std::move(frameHeaderCreator)), paddingAdder_(std::move(paddingAdder)) {}
  void createFrame(const ID3FrameWithLocalizedContent& frame, FrameType frameType, ID3Version version,
                   platform::Bytes& output) const override;

 private:
  ID3FrameConfiguration id3FrameConfiguration_;
  std::unique_ptr<FrameHeaderCreator> frameHeaderCreator_;
  std::unique_ptr<PaddingAdder> paddingAdder_;
};

/// Writes the lyrics, or the comments, of all languages.
class ID3FramesWithLocalizedContentCreator : public ID3FrameCreator {
 public:
  ID3FramesWithLocalizedContentCreator(const FrameKind& kind,
                                       std::unique_ptr<LocalizedFrameCreator> localizedFrameCreator)
      : kind_(kind), localizedFrameCreator_(std::move(localizedFrameCreator)) {}
  void createFrames(const ID3Tag& id3Tag, platform::Bytes& output) const override;

 private:
  FrameKind kind_;
  std::unique_ptr<LocalizedFrameCreator> localizedFrameCreator_;
};

struct ID3FramesWithLocalizedContentCreatorFactory {
  static std::unique_ptr<ID3FrameCreator> make(const FrameKind& kind);
};

}  // namespace ID3TagEditor
