#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

#include "platform/base/Bytes.h"

namespace platform {

/// Buffers text for standard output and writes it in large pieces. After a write has failed, further text is
/// dropped, and `failure` returns the reason.
class StandardOutput {
 public:
  void write(std::string_view text);
  void flush();
  /// Returns the system's error number of the first write that failed, or 0.
  int failure() const { return failure_; }

 private:
  std::string pending_;
  int failure_ = 0;
};

enum class Stream { output, error };

/// Returns whether the stream leads to a terminal.
bool isTerminal(Stream stream);
/// Returns the number of columns of the terminal that the stream leads to, or 80 if it is unknown.
std::size_t columnsOf(Stream stream);

/// Opens each standard stream that the program was started without, so that no other file gets its
/// descriptor, and with it the text that is printed. Printing to such a stream still fails.
void occupyMissingStreams();

/// Writes the text to standard error, in one write if possible. Ignores errors.
void writeToStandardError(std::string_view text);

}  // namespace platform

/// Functions that read files and pipes from beginning to end.
namespace platform::Input {

/// Returns the bytes of a regular file or a pipe, at most the first `limit`. Waits only a moment for a pipe
/// that has no writer. Throws FileError.
Bytes contents(const std::filesystem::path& file, std::uint64_t limit);

/// Like `contents`, for standard input.
Bytes contentsOfStandardInput(std::uint64_t limit);

}  // namespace platform::Input
