#pragma once

#include <sys/stat.h>

#include <cstdint>
#include <filesystem>
#include <span>
#include <string_view>

#include "platform/Bytes.h"

namespace platform {

/// An open file that owns its descriptor. Every operation throws FileError; an interrupted call is retried.
class FileHandle {
 public:
  /// Opens a regular file for reading. A folder, a pipe or a device is refused, and never waited for.
  static FileHandle forReading(const std::filesystem::path& file);
  /// Creates a regular file, or empties an existing one, for writing.
  static FileHandle forWriting(const std::filesystem::path& file);

  /// Takes over a descriptor, -1 as one that could not be opened. Errors name `file`.
  FileHandle(std::filesystem::path file, int descriptor);
  /// Opens a file that the program has written, to finish it: to set its attributes and to synchronise it.
  static FileHandle forFinishing(const std::filesystem::path& file);

  FileHandle(FileHandle&& other) noexcept;
  ~FileHandle();

  /// The file's attributes when it was opened.
  const struct stat& attributes() const { return attributes_; }
  /// The length in bytes when it was opened.
  std::uint64_t size() const { return static_cast<std::uint64_t>(attributes_.st_size); }
  int descriptor() const { return descriptor_; }
  const std::filesystem::path& path() const { return path_; }

  /// Up to `count` bytes from the current position on; fewer mean that the file ended.
  Bytes read(std::size_t count);
  /// The same, put behind the bytes that are there. Gives how many came.
  std::size_t readOnto(Bytes& bytes, std::size_t count);
  /// The same, when the file must have as many: FileError when it ends before.
  void readExactlyOnto(Bytes& bytes, std::size_t count);
  void seek(std::uint64_t offset);
  /// Writes all bytes at the current position.
  void write(ByteView bytes);
  /// Writes all of `source` from `offset` to its end at the current position, inside the kernel where the
  /// file systems can do that. A source that has become shorter since it was opened is an error.
  void copy(FileHandle& source, std::uint64_t offset);
  /// Waits until what was written has reached the disk.
  void synchronise();
  /// Closes the file and reports what only closing shows; without it the destructor closes silently.
  void close();

 private:
  FileHandle(std::filesystem::path path, std::string_view failure, int descriptor);
  static FileHandle open(const std::filesystem::path& file, int flags, std::string_view failure);
  void loadAttributes();
  [[noreturn]] void failForEndingEarly() const;
  std::size_t readInto(std::span<std::uint8_t> buffer);
  std::uint64_t copyInsideKernel(const FileHandle& source) const;

  std::filesystem::path path_;
  std::string_view failure_;
  int descriptor_ = -1;
  struct stat attributes_ {};
};

}  // namespace platform
