#pragma once

#include <exception>
#include <string>
#include <string_view>

#include "QuillmarkKit/model/TagSet.h"
#include "tests/TagBytes.h"

namespace tests {

/// Returns a v2.3 frame.
inline std::string frame(std::string_view id, std::string_view body, std::uint16_t flags = 0) {
  return TagBytes(3).frame(id, body, flags).characters().substr(10);
}

/// Returns a v2.3 text frame in ISO-8859-1.
inline std::string text(std::string_view id, std::string_view content) {
  return frame(id, "\0"s + std::string(content));
}

/// Returns a v2.3 tag with these frames, followed by audio.
inline std::string track(std::string_view frames, std::size_t padding = 0) {
  return TagBytes(3).raw(frames).padding(padding).characters() + audio();
}

/// Returns a tag set with a different value for every field.
inline QuillmarkKit::TagSet everyField() {
  QuillmarkKit::TagSet tags;
  std::int64_t number = 1970;
  for (const auto field : QuillmarkKit::allTagFields) {
    if (const auto text = stringKeyPath(field)) tags.*text = "the " + std::string(cliName(field));
    if (const auto integer = integerKeyPath(field)) tags.*integer = ++number;
  }
  tags.artwork = QuillmarkKit::Artwork::detecting(bytesFrom("\xFF\xD8\xFF\xE0 cover"));
  return tags;
}

/// Returns the message of the error that the operation throws, or an empty text if it throws none.
template <class Operation>
std::string messageOf(Operation operation) {
  try {
    operation();
  } catch (const std::exception& error) {
    return error.what();
  }
  return {};
}

}  // namespace tests
