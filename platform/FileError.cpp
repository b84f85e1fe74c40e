#include "platform/FileError.h"

#include <system_error>

namespace platform {

FileError::FileError(const std::filesystem::path& file, std::string_view failure, std::string_view reason)
    : file_(file), description_(lastPathComponent(file)) {
  description_.append(" ").append(failure).append(": ").append(reason).append(".");
}

FileError::FileError(const std::filesystem::path& file, std::string_view failure, int code)
    : FileError(file, failure, std::generic_category().message(code)) {
  code_ = code;
}

FileError FileError::followedBy(std::string_view sentence) const {
  FileError longer = *this;
  longer.description_.append(" ").append(sentence);
  return longer;
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
    : case_(value), description_(lastPathComponent(file)) {
  description_ += value == Case::movedOrDeleted ? " was moved or deleted meanwhile."
                                                : " was changed by another program meanwhile.";
}

}  // namespace platform
