#include "platform/FileHandle.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <string_view>
#include <utility>

#include "platform/FileError.h"
#include "platform/posix/SystemFiles.h"

namespace platform {

namespace {

constexpr std::size_t copyChunkSize = 0x20000;
// The most bytes that one call copies inside the kernel: the largest count that Linux accepts, page-aligned.
constexpr std::uint64_t kernelChunkSize = 0x7ffff000;

}  // namespace

FileHandle::FileHandle(std::filesystem::path path, std::string_view failure, int descriptor)
    : path_(std::move(path)), failure_(failure), descriptor_(descriptor) {
  if (!descriptor_) throw FileError(path_, failure_, errno);
  loadAttributes();
}

FileHandle::FileHandle(std::filesystem::path file, int descriptor)
    : FileHandle(std::move(file), FileError::notWritten, descriptor) {
}

FileHandle FileHandle::forReading(const std::filesystem::path& file) {
  // Without O_NONBLOCK, opening a pipe would wait for its other end.
  const int descriptor =
      retrying([&] { return ::open(file.c_str(), O_RDONLY | O_NOCTTY | O_NONBLOCK | O_CLOEXEC); });
  FileHandle handle(file, FileError::notRead, descriptor);
  if (S_ISDIR(handle.attributes_.st_mode)) throw FileError(file, FileError::notRead, "it is a folder");
  if (!S_ISREG(handle.attributes_.st_mode)) {
    throw FileError(file, FileError::notRead, "it is not a regular file");
  }
  return handle;
}

void FileHandle::loadAttributes() {
  if (::fstat(descriptor(), &attributes_) == -1) throw FileError(path_, failure_, errno);
}

ByteView FileHandle::start() {
  if (!start_) {
    const std::uint64_t position = std::exchange(position_, 0);
    start_ = read(startSize);
    position_ = position;
  }
  return *start_;
}

std::size_t FileHandle::readInto(std::span<std::uint8_t> buffer) {
  std::size_t filled = 0;
  while (filled < buffer.size()) {
    const ssize_t count = retrying([&] {
      return ::pread(descriptor(), buffer.data() + filled, buffer.size() - filled,
                     static_cast<off_t>(position_));
    });
    if (count == -1) throw FileError(path_, FileError::notRead, errno);
    if (count == 0) break;
    filled += static_cast<std::size_t>(count);
    position_ += static_cast<std::uint64_t>(count);
  }
  return filled;
}

Bytes FileHandle::read(std::size_t count) {
  Bytes bytes(count);
  bytes.resize(readInto(bytes));
  return bytes;
}

Bytes FileHandle::readFirst(std::size_t count) {
  const ByteView known = start().first(std::min(count, start().size()));
  Bytes bytes(count);
  std::ranges::copy(known, bytes.begin());
  seek(known.size());
  bytes.resize(known.size() + readInto(std::span(bytes).subspan(known.size())));
  return bytes;
}

void FileHandle::write(ByteView bytes) {
  while (!bytes.empty()) {
    const ssize_t count = retrying([&] { return ::write(descriptor(), bytes.data(), bytes.size()); });
    if (count == -1) throw FileError(path_, FileError::notWritten, errno);
    // A file system that accepted zero bytes time after time would keep this loop running for ever.
    if (count == 0) throw FileError(path_, FileError::notWritten, "the system took nothing of it");
    bytes = bytes.subspan(static_cast<std::size_t>(count));
    written_ += static_cast<std::uint64_t>(count);
  }
}

/// Copies as much as the kernel can, and moves the reading position of `source` by that.
void FileHandle::copyInsideKernel(FileHandle& source) const {
  const std::uint64_t end = sharedFrom(source);
  while (source.position_ < end) {
    const auto wanted = static_cast<std::size_t>(std::min(end - source.position_, kernelChunkSize));
    const std::int64_t count =
        SystemFiles::copyInsideKernel(source.descriptor(), source.position_, descriptor(), wanted);
    if (count <= 0) return;
    source.position_ += static_cast<std::uint64_t>(count);
  }
  if (end == source.size()) return;
  if (::lseek(descriptor(), 0, SEEK_END) == -1) throw FileError(path_, failure_, errno);
  source.position_ = source.size();
}

/// Shares blocks with `source` from the next block boundary on, if its reading position and the end of what
/// was written have the same place in a block and the file system can do that. Returns the position in
/// `source` from which its bytes are shared, or its size if none are.
std::uint64_t FileHandle::sharedFrom(const FileHandle& source) const {
  constexpr std::uint64_t blockSize = 4096;
  const std::uint64_t toBoundary = (blockSize - source.position_ % blockSize) % blockSize;
  const std::uint64_t boundary = source.position_ + toBoundary;
  const std::uint64_t target = written_ + toBoundary;
  const bool isShared = target % blockSize == 0 && boundary < source.size() &&
                        SystemFiles::shareBlocks(source.descriptor(), boundary, descriptor(), target);
  return isShared ? boundary : source.size();
}

void FileHandle::copy(FileHandle& source, std::uint64_t offset) {
  source.seek(offset);
  copyInsideKernel(source);
  if (source.position_ >= source.size()) return;
  // If the kernel cannot copy, or stops early, both positions are at the first byte that was not copied. A
  // real error in either file occurs here again.
  Bytes chunk(copyChunkSize);
  while (source.position_ < source.size()) {
    const auto wanted =
        static_cast<std::size_t>(std::min<std::uint64_t>(source.size() - source.position_, chunk.size()));
    const std::size_t count = source.readInto(std::span(chunk).first(wanted));
    if (count == 0) throw FileConflict(FileConflict::Case::changed, source.path_);
    write(ByteView(chunk).first(count));
  }
}

void FileHandle::synchronise() {
  if (retrying([&] { return SystemFiles::synchronise(descriptor()); }) == -1)
    throw FileError(path_, failure_, errno);
}

void FileHandle::close() {
  // If `close` is interrupted, Linux has closed the descriptor nevertheless.
  if (::close(descriptor_.release()) == -1 && errno != EINTR) throw FileError(path_, failure_, errno);
}

}  // namespace platform
