#include "ID3TagEditor/create/Mp3FileWriter.h"

#include "ID3TagEditor/model/Mp3Extension.h"
#include "platform/FileManager.h"

namespace ID3TagEditor {

using platform::FileHandle;
namespace FileManager = platform::FileManager;

void Mp3FileWriter::eventuallyCreateIntermediatesDirectoriesFor(const std::filesystem::path& path) {
  FileManager::createDirectoriesAbove(path);
}

void Mp3FileWriter::write(platform::ByteView newId3TagData, FileHandle& source, std::uint64_t audioStart,
                          const std::filesystem::path& toPath) const {
  requireMp3Extension(toPath);
  const auto writeTagAndAudio = [&](FileHandle& target) {
    target.write(newId3TagData);
    target.copy(source, audioStart);
  };
  // The same file under another name must not be emptied before its audio is copied.
  if (FileManager::isSameFile(source.path(), toPath)) {
    FileManager::writeAtomically(toPath, writeTagAndAudio);
    return;
  }
  eventuallyCreateIntermediatesDirectoriesFor(toPath);
  FileHandle target = FileHandle::forWriting(toPath);
  writeTagAndAudio(target);
  target.close();
}

}  // namespace ID3TagEditor
