#pragma once

#include <memory>
#include <string_view>

#include "ID3TagEditor/create/FrameHeaderCreation.h"
#include "ID3TagEditor/create/StringToBytesAdapters.h"

namespace ID3TagEditor {

/// Writes text frames.
class FrameFromStringContentCreator {
 public:
  virtual ~FrameFromStringContentCreator() = default;
  /// Appends the whole frame to `output`.
  virtual void createFrame(FrameType frameType, ID3Version version, std::string_view content,
                           platform::Bytes& output) const = 0;
};

class ID3FrameFromStringContentCreator : public FrameFromStringContentCreator {
 public:
  ID3FrameFromStringContentCreator(std::unique_ptr<FrameHeaderCreator> frameHeaderCreator,
                                   std::unique_ptr<StringToBytesAdapter> stringToBytesAdapter)
      : frameHeaderCreator_(std::move(frameHeaderCreator)),
        stringToBytesAdapter_(std::move(stringToBytesAdapter)) {}
  void createFrame(FrameType frameType, ID3Version version, std::string_view content,
                   platform::Bytes& output) const override;

 private:
  std::unique_ptr<FrameHeaderCreator> frameHeaderCreator_;
  std::unique_ptr<StringToBytesAdapter> stringToBytesAdapter_;
};

struct ID3FrameFromStringContentCreatorWithISO88591EncodingFactory {
  static std::unique_ptr<FrameFromStringContentCreator> make();
};

struct ID3FrameFromStringContentCreatorWithUTF16EncodingFactory {
  static std::unique_ptr<FrameFromStringContentCreator> make();
};

}  // namespace ID3TagEditor
