#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>

#include "platform/FileHandle.h"
#include "platform/base/Bytes.h"

namespace QuillmarkKit {

/// An open MP3 file. The tag is read at its first use; the audio is not read.
class MP3File {
 public:
  /// Throws TagStoreError if the file cannot be opened or does not start like an MP3. Throws
  /// platform::FileError if it is a folder, pipe or device, or its first bytes cannot be read.
  explicit MP3File(const std::filesystem::path& path);
  /// Takes an open file and does not check that it is an MP3.
  explicit MP3File(platform::FileHandle handle) : handle_(std::move(handle)) {}

  platform::FileHandle& handle() { return handle_; }
  const std::filesystem::path& path() const { return handle_.path(); }

  /// Returns the ID3v2 tag at the start of the file, of any version, header and footer included. Its size is
  /// the one in the header, limited to the size of the file. If the file does not start with a tag, returns
  /// its first bytes. Throws platform::FileConflict if the file has become shorter, and platform::FileError
  /// if it cannot be read.
  const platform::SharedBytes& tagBytes();
  /// Releases the bytes of `tagBytes`; slices keep them alive. The next call of `tagBytes` reads them again.
  void dropTagBytes() { tagBytes_.reset(); }
  /// Returns the last `count` bytes of the file, or all if it has fewer.
  platform::Bytes lastBytes(std::size_t count);

 private:
  platform::FileHandle handle_;
  std::optional<platform::SharedBytes> tagBytes_;
};

/// Throws the same errors as the constructor of MP3File.
void verifyMP3(const std::filesystem::path& at);

/// Returns whether the bytes start with an ID3v2 tag or with the eleven set bits of an MPEG audio frame.
bool looksLikeMP3(platform::ByteView data);

/// Returns the name of the music format whose signature the bytes have, or nothing if none matches. `data`
/// must contain the first 11 bytes of the file to recognise all formats.
std::optional<std::string> describeFormat(platform::ByteView data);

}  // namespace QuillmarkKit
