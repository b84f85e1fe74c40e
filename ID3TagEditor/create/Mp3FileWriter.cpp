#include "ID3TagEditor/create/Mp3FileWriter.h"

#include "ID3TagEditor/model/Mp3Extension.h"
#include "platform/FileManager.h"
#include "platform/FileReplacement.h"

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

}  // namespace ID3TagEditor
