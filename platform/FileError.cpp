#include "platform/FileError.h"

#include <system_error>

namespace platform {

FileError::FileError(const std::filesystem::path& file, std::string_view failure, std::string_view reason)
    : std::runtime_error(lastPathComponent(file).append(" ").append(failure).append(": ").append(reason) +
                         "."),
      file_(file) {
}

FileError::FileError(const std::filesystem::path& file, std::string_view failure, int code)
    : FileError(file, failure, std::generic_category().message(code)) {
  code_ = code;
}

FileError FileError::followedBy(std::string_view sentence) const {
  return {file_, std::string(what()).append(" ").append(sentence), code_};
}

std::string lastPathComponent(const std::filesystem::path& file) {
  const std::string& text = file.native();
  const std::size_t end = text.find_last_not_of('/');
  if (end == std::string::npos) return text;
  const std::size_t slash = text.rfind('/', end);
  const std::size_t begin = slash == std::string::npos ? 0 : slash + 1;
  return text.substr(begin, end + 1 - begin);
}

FileConflict::FileConflict(Case value, const std::filesystem::path& file)
    : std::runtime_error(lastPathComponent(file) + (value == Case::movedOrDeleted
                                                        ? " was moved or deleted meanwhile."
                                                        : " was changed by another program meanwhile.")),
      case_(value) {
}

}  // namespace platform
