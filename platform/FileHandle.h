#pragma once

#include <sys/stat.h>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string_view>

#include "platform/Descriptor.h"
#include "platform/base/Bytes.h"

namespace platform {

/// An open file that owns its descriptor. Every operation throws FileError; an interrupted call is retried.
/// Its attributes are taken before the first byte is read, so that they tell later whether what was read is
/// still what the file holds.
class FileHandle {
 public:
  /// Opens a regular file for reading. A folder, a pipe or a device is refused, and never waited for.
  static FileHandle forReading(const std::filesystem::path& file);
  /// Takes over a descriptor, -1 as one that could not be opened, for the reason in errno. Errors name
  /// `file`.
  FileHandle(std::filesystem::path file, int descriptor);

  /// The file's attributes when it was opened.
  const struct stat& attributes() const { return attributes_; }
  /// The length in bytes when it was opened.
  std::uint64_t size() const { return static_cast<std::uint64_t>(attributes_.st_size); }
  int descriptor() const { return descriptor_.get(); }
  const std::filesystem::path& path() const { return path_; }

  /// Returns the file's first bytes, `startSize` of them if it has as many: enough to recognise the kind of
  /// file. They are read once.
  ByteView start();
  static constexpr std::size_t startSize = 12;
  /// Returns the file's first `count` bytes; fewer mean that the file ended. What `start` has read is not
  /// read again.
  Bytes readFirst(std::size_t count);

  /// Up to `count` bytes from the reading position on; fewer mean that the file ended.
  Bytes read(std::size_t count);
  /// Sets the reading position.
  void seek(std::uint64_t offset) { position_ = offset; }
  /// Writes all bytes behind what was written.
  void write(ByteView bytes);
  /// Writes what `source` had from `offset` to its end when it was opened, inside the kernel where the file
  /// systems can do that. FileConflict when the source has become shorter.
  void copy(FileHandle& source, std::uint64_t offset);
  /// Waits until the file's data and attributes have reached the disk.
  void synchronise();
  /// Closes the file and reports what only closing shows; without it the destructor closes silently.
  void close();

 private:
  FileHandle(std::filesystem::path path, std::string_view failure, int descriptor);
  void loadAttributes();
  std::size_t readInto(std::span<std::uint8_t> buffer);
  void copyInsideKernel(FileHandle& source) const;

  std::filesystem::path path_;
  std::string_view failure_;
  Descriptor descriptor_;
  struct stat attributes_ {};
  std::uint64_t position_ = 0;
  /// The number of bytes that `write` has written.
  std::uint64_t written_ = 0;
  std::optional<Bytes> start_;
};

}  // namespace platform
