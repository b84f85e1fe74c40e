#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>

#include "platform/FileHandle.h"
#include "platform/base/Bytes.h"

namespace QuillmarkKit {

/// An open MP3 file. Its tag is read once, when it is first asked for; its audio is not read.
class MP3File {
 public:
  /// Throws TagStoreError unless the file can be opened and its first bytes are those of an MP3, and
  /// platform::FileError if they cannot be read.
  explicit MP3File(const std::filesystem::path& path);
  /// Takes an open file without looking at its first bytes.
  explicit MP3File(platform::FileHandle handle) : handle_(std::move(handle)) {}

  platform::FileHandle& handle() { return handle_; }
  const std::filesystem::path& path() const { return handle_.path(); }

  /// Returns the bytes that the header at the file's start claims for its ID3v2 tag, header and footer
  /// included and whatever the version, as far as the file holds them; only its first bytes if no tag starts
  /// there. Throws platform::FileConflict if the file has become shorter, and platform::FileError.
  const platform::SharedBytes& tagBytes();
  /// Lets go of the bytes of `tagBytes`; slices of them keep them alive. The next call reads them again.
  void dropTagBytes() { tagBytes_.reset(); }
  /// Returns the last `count` bytes of the file, or all if it has fewer.
  platform::Bytes lastBytes(std::size_t count);

 private:
  platform::FileHandle handle_;
  std::optional<platform::SharedBytes> tagBytes_;
};

/// Throws as the constructor of MP3File does.
void verifyMP3(const std::filesystem::path& at);

/// Returns whether the bytes start with an ID3v2 tag or with the eleven set bits of an MPEG audio frame.
bool looksLikeMP3(platform::ByteView data);

/// Returns the name of the music format that the bytes start like, if it is a known one. Needs 12 bytes to
/// recognise each of them.
std::optional<std::string> describeFormat(platform::ByteView data);

}  // namespace QuillmarkKit
