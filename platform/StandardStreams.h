#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace platform {

/// What the program prints for its caller: collected, and handed to the system in large pieces. When the
/// stream cannot be written, the rest of what is printed is dropped and `failure()` tells why.
class StandardOutput {
 public:
  void write(std::string_view text);
  void flush();
  /// The system's error number of the first write that failed, or 0.
  int failure() const { return failure_; }

 private:
  std::string pending_;
  int failure_ = 0;
};

enum class Stream { output, error };

/// Whether what goes to the stream goes to a terminal.
bool isTerminal(Stream stream);
/// The columns of the terminal that the stream goes to; 80 where it does not say.
std::size_t columnsOf(Stream stream);

/// Takes up those of the three standard streams that the program was started without, so that no file that it
/// opens gets their place, and with it what is printed. Printing to such a stream still fails.
void occupyMissingStreams();

/// Writes the text to standard error in one write.
void writeToStandardError(std::string_view text);

}  // namespace platform
