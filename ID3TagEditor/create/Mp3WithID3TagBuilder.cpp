#include "ID3TagEditor/create/Mp3WithID3TagBuilder.h"

#include "ID3TagEditor/model/ID3TagEditorError.h"

namespace ID3TagEditor {

platform::Bytes Mp3WithID3TagBuilder::build(platform::ByteView mp3, ID3Tag& newId3Tag,
                                            const std::optional<ID3Tag>& currentId3Tag) const {
  const std::size_t audioStart =
      currentId3Tag ? std::size_t{currentId3Tag->properties.size} + ID3TagConfiguration::headerSize() : 0;
  if (!mp3.empty() && mp3.size() < audioStart) throw ID3TagEditorError(ID3TagEditorError::corruptedFile);
  platform::Bytes built = id3TagCreator_.create(newId3Tag);
  if (!mp3.empty()) platform::append(built, mp3.subspan(audioStart));
  return built;
}

}  // namespace ID3TagEditor
