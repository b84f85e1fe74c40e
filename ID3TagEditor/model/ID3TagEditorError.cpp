#include "ID3TagEditor/model/ID3TagEditorError.h"

#include "platform/base/Strings.h"

namespace ID3TagEditor {

void requireMp3Extension(const std::filesystem::path& path) {
  const std::string name = path.filename().native();
  const std::size_t dot = name.rfind('.');
  const std::string extension = dot == std::string::npos ? "" : name.substr(dot + 1);
  if (!platform::Strings::equalIgnoringASCIICase(extension, "mp3")) {
    throw ID3TagEditorError(ID3TagEditorError::invalidFileFormat);
  }
}

}  // namespace ID3TagEditor
