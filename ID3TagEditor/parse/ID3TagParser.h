#pragma once

#include <memory>
#include <optional>

#include "ID3TagEditor/model/ID3Tag.h"
#include "ID3TagEditor/parse/ID3FramesParser.h"
#include "ID3TagEditor/parse/TagHeaderParsing.h"

namespace ID3TagEditor {

class ID3TagParser {
 public:
  ID3TagParser(std::unique_ptr<TagSizeParser> tagSizeParser,
               std::unique_ptr<TagVersionParser> tagVersionParser, std::unique_ptr<TagPresence> tagPresence,
               ID3FramesParser framesParser)
      : tagSizeParser_(std::move(tagSizeParser)),
        tagVersionParser_(std::move(tagVersionParser)),
        tagPresence_(std::move(tagPresence)),
        framesParser_(std::move(framesParser)) {}

  /// Returns the tag at the start of the buffer, or nothing if there is no tag of a known version. Throws
  /// `corruptedFile` if the buffer ends before the tag does. Ignores the flags in the header.
  std::optional<ID3Tag> parse(const platform::SharedBytes& mp3) const;

 private:
  std::unique_ptr<TagSizeParser> tagSizeParser_;
  std::unique_ptr<TagVersionParser> tagVersionParser_;
  std::unique_ptr<TagPresence> tagPresence_;
  ID3FramesParser framesParser_;
};

struct ID3TagParserFactory {
  static ID3TagParser make();
};

}  // namespace ID3TagEditor
