#include "ID3TagEditor/create/MP3Writing.h"

#include "ID3TagEditor/model/ID3TagEditorError.h"
#include "platform/FileReplacement.h"
#include "platform/Paths.h"

namespace ID3TagEditor {

using platform::FileHandle;
namespace FileManager = platform::FileManager;

void Mp3FileWriter::eventuallyCreateIntermediatesDirectoriesFor(const std::filesystem::path& path) {
  FileManager::createDirectoriesAbove(path);
}

void Mp3FileWriter::write(platform::ByteView newId3TagData, FileHandle& source, std::uint64_t audioStart,
                          const std::optional<std::filesystem::path>& toPath) const {
  std::optional<platform::FileReplacement> replacement;
  if (toPath) {
    requireMp3Extension(*toPath);
    eventuallyCreateIntermediatesDirectoriesFor(*toPath);
    replacement.emplace(*toPath);
  } else {
    replacement.emplace(source);
  }
  replacement->file().write(newId3TagData);
  replacement->file().copy(source, audioStart);
  replacement->commit();
}

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
