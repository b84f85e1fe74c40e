#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/base/Bytes.h"

namespace QuillmarkKit {

/// One frame of a tag as it is on disk.
struct ID3Frame {
  /// Four characters from A to Z and 0 to 9.
  std::string id;
  /// The two flag bytes, the first one in the high half.
  std::uint16_t flags = 0;
  /// The bytes after the frame header, not interpreted.
  platform::SharedBytes payload;

  bool operator==(const ID3Frame&) const = default;
};

/// Reads and writes the frames of a tag as raw bytes, to preserve frames that belong to no field. Reads tags
/// of v2.3 and v2.4, and writes v2.3. Does not find frames of v2.2, which have another header. Shares no code
/// with the engine.
namespace ID3Frames {

struct ParsedTag {
  /// The major version byte.
  std::uint8_t version = 0;
  /// In file order.
  std::vector<ID3Frame> frames;
  /// The size of the tag in bytes, without a footer.
  std::uint64_t audioOffset = 0;

  bool operator==(const ParsedTag&) const = default;
};

/// Returns the identifiers of the frames that belong to a field, in ascending order.
std::vector<std::string_view> managed();

/// Returns the tag at the start of the bytes, or nothing if they do not contain a whole tag. Undoes whole-tag
/// unsynchronisation and skips an extended header (ID3v2.3.0 §3.1, §3.2, ID3v2.4.0 structure §3). Stops at
/// the first bytes that are not a frame or do not fit.
std::optional<ParsedTag> parse(const platform::SharedBytes& data);

/// Returns the file's frames that belong to no field, in file order; none if the file cannot be read or has
/// no tag.
std::vector<ID3Frame> unmanagedFrames(const std::filesystem::path& inFileAt);

/// Returns a whole ID3v2.3 tag with the frames, followed by `padding` zero bytes; a negative number counts as
/// 0. Omits frames whose identifier does not have four bytes. Throws ID3FrameError, which names `file`, if a
/// size does not fit its field.
platform::Bytes tagData(const std::vector<ID3Frame>& frames, std::int64_t padding,
                        const std::filesystem::path& file);

/// Adds the frames after those in the file's tag and removes its padding. Does nothing without frames. Throws
/// ID3FrameError, platform::FileError and platform::FileConflict; the file is then unchanged.
void append(const std::vector<ID3Frame>& frames, const std::filesystem::path& toFileAt);

/// Writes a file that contains a tag with only these frames, and the audio of another file. Throws
/// ID3FrameError, platform::FileError and platform::FileConflict; `to` is then unchanged.
void write(const std::vector<ID3Frame>& frames, const std::filesystem::path& withAudioFrom,
           const std::filesystem::path& to);

/// The frames of a tag that belong to no field. Keeps the bytes of the tag alive and takes no memory
/// for each frame.
class UnmanagedFrames {
 public:
  /// `tag` must contain the start of a file. There are no frames if it does not contain a whole tag.
  explicit UnmanagedFrames(const platform::SharedBytes& tag);

  bool empty() const { return size_ == 0; }
  /// Returns the number of bytes that `appendTo` adds.
  std::size_t size() const { return size_; }
  /// Returns the size of the tag in bytes, without a footer; 0 if there is no tag.
  std::uint64_t audioStart() const { return audioStart_; }
  /// Adds the frames in the form of ID3v2.3, in file order.
  void appendTo(platform::Bytes& bytes) const;

 private:
  template <class Visit>
  void forEach(Visit visit) const;

  platform::SharedBytes body_;
  std::uint64_t framesStart_ = 0;
  std::uint64_t audioStart_ = 0;
  std::size_t size_ = 0;
  std::uint8_t version_ = 0;
};

/// Replaces the padding of a tag that the engine has written (ID3v2.3, no flags) with the frames. Throws
/// ID3FrameError, which names `file`, if the bytes are not such a tag or the new tag would be too big.
void appendTo(platform::Bytes& tag, const UnmanagedFrames& frames, const std::filesystem::path& file);

/// Returns a whole ID3v2.3 tag with the frames and without padding. Throws ID3FrameError, which names `file`,
/// if the tag would be too big.
platform::Bytes tagData(const UnmanagedFrames& frames, const std::filesystem::path& file);

}  // namespace ID3Frames

}  // namespace QuillmarkKit
