#pragma once

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string_view>
#include <utility>

#include "platform/base/Bytes.h"

namespace platform {

/// Owns a file descriptor and closes it when destroyed; -1 if it has none.
class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int descriptor) : descriptor_(descriptor) {}
  Descriptor(Descriptor&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    return *this;
  }
  ~Descriptor() {
    if (descriptor_ != -1) ::close(descriptor_);
  }

  int get() const { return descriptor_; }
  explicit operator bool() const { return descriptor_ != -1; }
  /// Returns the descriptor, which the caller must close from now on.
  int release() { return std::exchange(descriptor_, -1); }

 private:
  int descriptor_ = -1;
};

/// Repeats the system call as long as signals interrupt it. Returns the result of the last call.
template <class Call>
auto retrying(Call call) {
  auto result = call();
  while (result == -1 && errno == EINTR) result = call();
  return result;
}

/// An open file; owns its descriptor. Every operation throws FileError if it fails, and retries interrupted
/// calls. The attributes are read before the first byte, so that comparing them later shows whether the file
/// still holds the bytes that were read.
class FileHandle {
 public:
  /// Opens a regular file for reading. Throws FileError for a folder, a pipe or a device, without waiting for
  /// them.
  static FileHandle forReading(const std::filesystem::path& file);
  /// Takes ownership of the descriptor. Throws FileError, with the reason in errno, if it is -1. Errors name
  /// `file`.
  FileHandle(std::filesystem::path file, int descriptor);

  /// Returns the attributes that the file had when it was opened.
  const struct stat& attributes() const { return attributes_; }
  /// Returns the length in bytes that the file had when it was opened.
  std::uint64_t size() const { return static_cast<std::uint64_t>(attributes_.st_size); }
  int descriptor() const { return descriptor_.get(); }
  const std::filesystem::path& path() const { return path_; }

  /// Returns the first `startSize` bytes of the file, or all of them if it has fewer. They are enough to
  /// recognise the kind of file, and are read only once.
  ByteView start();
  static constexpr std::size_t startSize = 12;
  /// Returns the first `count` bytes of the file, or fewer if it ends before. Does not read again the bytes
  /// that `start` has read. Leaves the reading position after the bytes returned.
  Bytes readFirst(std::size_t count);

  /// Returns up to `count` bytes from the reading position on, fewer only if the file ends, and moves the
  /// position.
  Bytes read(std::size_t count);
  /// Sets the reading position.
  void seek(std::uint64_t offset) { position_ = offset; }
  /// Writes all of the bytes after those already written.
  void write(ByteView bytes);
  /// Writes the bytes that `source` had from `offset` to its end when it was opened, inside the kernel if the
  /// file systems support that. Throws FileConflict if the source has become shorter.
  void copy(FileHandle& source, std::uint64_t offset);
  /// Waits until the file's data and attributes have reached the disk.
  void synchronise();
  /// Closes the file. Throws FileError for errors that only closing reports; the destructor ignores them.
  void close();

 private:
  FileHandle(std::filesystem::path path, std::string_view failure, int descriptor);
  void loadAttributes();
  std::size_t readInto(std::span<std::uint8_t> buffer);
  void copyInsideKernel(FileHandle& source) const;
  std::uint64_t sharedFrom(const FileHandle& source) const;

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
