#include "ID3TagEditor/parse/ID3TagParser.h"

#include "ID3TagEditor/model/ID3TagEditorError.h"

namespace ID3TagEditor {

std::optional<ID3Tag> ID3TagParser::parse(const platform::SharedBytes& mp3) const {
  const ID3Version version = tagVersionParser_->parse(mp3);
  if (!tagPresence_->isTagPresentIn(mp3, version)) return std::nullopt;
  if (mp3.size() < ID3TagConfiguration::headerSize())
    throw ID3TagEditorError(ID3TagEditorError::corruptedFile);
  ID3Tag tag(version);
  tag.properties.size = tagSizeParser_->parse(mp3);
  if (mp3.size() < std::uint64_t{tag.properties.size} + ID3TagConfiguration::headerSize()) {
    throw ID3TagEditorError(ID3TagEditorError::corruptedFile);
  }
  framesParser_.parse(mp3, tag);
  return tag;
}

ID3TagParser ID3TagParserFactory::make() {
  ID3FramesParser framesParser(
      std::make_unique<ID3FrameSizeParser>(std::make_unique<ID3FrameContentSizeParser>()),
      ID3FrameParser(ID3FrameContentParsingOperationFactory::make()));
  return {std::make_unique<ID3TagSizeParser>(), std::make_unique<ID3TagVersionParser>(),
          std::make_unique<ID3TagPresence>(), std::move(framesParser)};
}

}  // namespace ID3TagEditor
