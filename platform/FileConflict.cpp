#include "platform/FileConflict.h"

#include "platform/FileError.h"

namespace platform {

FileConflict::FileConflict(Case value, const std::filesystem::path& file)
    : case_(value), description_(lastPathComponent(file)) {
  description_ += value == Case::movedOrDeleted ? " was moved or deleted meanwhile."
                                                : " was changed by another program meanwhile.";
}

}  // namespace platform
