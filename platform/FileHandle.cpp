#include "platform/FileHandle.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <string_view>
#include <utility>

#include "platform/FileError.h"

namespace platform {

namespace {

constexpr std::size_t copyChunkSize = 0x20000;
// What one call moves at most inside the kernel: the largest count that Linux accepts, page-aligned.
constexpr std::size_t kernelChunkSize = 0x7ffff000;

template <class Call>
auto retrying(Call call) {
  auto result = call();
  while (result == -1 && errno == EINTR) result = call();
  return result;
}

}  // namespace

FileHandle::FileHandle(std::filesystem::path path, std::string_view failure, int descriptor)
    : path_(std::move(path)), failure_(failure), descriptor_(descriptor) {
}

FileHandle::FileHandle(std::filesystem::path file, int descriptor)
    : FileHandle(std::move(file), FileError::notWritten, descriptor) {
  loadAttributes();
}

FileHandle FileHandle::open(const std::filesystem::path& file, int flags, std::string_view failure) {
  // Without O_NONBLOCK, opening a pipe would wait for its other end.
  const int descriptor = retrying([&] { return ::open(file.c_str(), flags | O_NONBLOCK | O_CLOEXEC, 0666); });
  if (descriptor == -1) throw FileError(file, failure, errno);
  FileHandle handle(file, failure, descriptor);
  handle.loadAttributes();
  if (S_ISDIR(handle.attributes_.st_mode)) throw FileError(file, failure, "it is a folder");
  if (!S_ISREG(handle.attributes_.st_mode)) throw FileError(file, failure, "it is not a regular file");
  return handle;
}

FileHandle FileHandle::forReading(const std::filesystem::path& file) {
  return open(file, O_RDONLY, FileError::notRead);
}

FileHandle FileHandle::forWriting(const std::filesystem::path& file) {
  return open(file, O_WRONLY | O_CREAT | O_TRUNC, FileError::notWritten);
}

FileHandle FileHandle::forFinishing(const std::filesystem::path& file) {
  return open(file, O_RDONLY | O_NOFOLLOW, FileError::notWritten);
}

FileHandle::FileHandle(FileHandle&& other) noexcept
    : path_(std::move(other.path_)),
      failure_(other.failure_),
      descriptor_(std::exchange(other.descriptor_, -1)),
      attributes_(other.attributes_) {
}

FileHandle::~FileHandle() {
  if (descriptor_ != -1) ::close(descriptor_);
}

void FileHandle::loadAttributes() {
  if (::fstat(descriptor_, &attributes_) == -1) throw FileError(path_, failure_, errno);
}

std::size_t FileHandle::readInto(std::span<std::uint8_t> buffer) {
  std::size_t filled = 0;
  while (filled < buffer.size()) {
    const ssize_t count =
        retrying([&] { return ::read(descriptor_, buffer.data() + filled, buffer.size() - filled); });
    if (count == -1) throw FileError(path_, FileError::notRead, errno);
    if (count == 0) break;
    filled += static_cast<std::size_t>(count);
  }
  return filled;
}

std::size_t FileHandle::readOnto(Bytes& bytes, std::size_t count) {
  const std::size_t before = bytes.size();
  bytes.resize(before + count);
  const std::size_t came = readInto(std::span(bytes).subspan(before));
  bytes.resize(before + came);
  return came;
}

void FileHandle::readExactlyOnto(Bytes& bytes, std::size_t count) {
  if (readOnto(bytes, count) != count) failForEndingEarly();
}

void FileHandle::failForEndingEarly() const {
  throw FileError(path_, FileError::notRead, "it has become shorter meanwhile");
}

Bytes FileHandle::read(std::size_t count) {
  Bytes bytes;
  readOnto(bytes, count);
  return bytes;
}

void FileHandle::seek(std::uint64_t offset) {
  if (::lseek(descriptor_, static_cast<off_t>(offset), SEEK_SET) == -1) {
    throw FileError(path_, failure_, errno);
  }
}

void FileHandle::write(ByteView bytes) {
  while (!bytes.empty()) {
    const ssize_t count = retrying([&] { return ::write(descriptor_, bytes.data(), bytes.size()); });
    if (count == -1) throw FileError(path_, FileError::notWritten, errno);
    bytes = bytes.subspan(static_cast<std::size_t>(count));
  }
}

/// Gives the bytes that were copied.
std::uint64_t FileHandle::copyInsideKernel(const FileHandle& source) const {
  std::uint64_t copied = 0;
  for (;;) {
    const ssize_t count = retrying([&] {
      return ::copy_file_range(source.descriptor_, nullptr, descriptor_, nullptr, kernelChunkSize, 0);
    });
    if (count <= 0) return copied;
    copied += static_cast<std::uint64_t>(count);
  }
}

void FileHandle::copy(FileHandle& source, std::uint64_t offset) {
  source.seek(offset);
  std::uint64_t position = offset + copyInsideKernel(source);
  // Where the kernel cannot copy, or stops early, both positions stand at the first byte not yet copied. What
  // is really wrong with either file shows itself here again.
  std::array<std::uint8_t, copyChunkSize> chunk;
  while (const std::size_t count = source.readInto(chunk)) {
    write(ByteView(chunk).first(count));
    position += count;
  }
  if (position < source.size()) source.failForEndingEarly();
}

void FileHandle::synchronise() {
  if (retrying([&] { return ::fdatasync(descriptor_); }) == -1) throw FileError(path_, failure_, errno);
}

void FileHandle::close() {
  // Linux has closed the descriptor even when it reports an interruption.
  if (::close(std::exchange(descriptor_, -1)) == -1 && errno != EINTR)
    throw FileError(path_, failure_, errno);
}

}  // namespace platform
