#include "QuillmarkKit/store/engine/ID3FrameError.h"

#include <utility>

#include "platform/FileError.h"

namespace QuillmarkKit {

ID3FrameError::ID3FrameError(Case value, std::filesystem::path url)
    : case_(value), url_(std::move(url)), description_(platform::lastPathComponent(url_)) {
  description_ +=
      value == Case::tagTooBig ? tagTooBigDescription : ": the ID3 tag could not be read back after writing.";
}

}  // namespace QuillmarkKit
