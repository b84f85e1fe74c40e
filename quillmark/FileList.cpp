#include "quillmark/FileList.h"

#include "platform/Paths.h"
#include "quillmark/CLIError.h"

namespace quillmark {

FileList::FileList(const Arguments& arguments) : words_(arguments.positional) {
  if (words_.empty()) throw CLIError::noFiles();
}

std::filesystem::path FileList::location(std::size_t index) const {
  return platform::fileLocation(words_[index]);
}

}  // namespace quillmark
