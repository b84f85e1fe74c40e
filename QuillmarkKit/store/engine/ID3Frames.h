#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
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
  /// What follows the frame header, never interpreted.
  platform::SharedBytes payload;

  bool operator==(const ID3Frame&) const = default;
};

/// The frames of a tag as raw bytes, for frames that no tag set holds. Reads tags of v2.3 and v2.4 (frames of
/// v2.2 have another header and are not found) and writes v2.3. Shares no code with the engine.
namespace ID3Frames {

struct ParsedTag {
  /// The major version byte.
  std::uint8_t version = 0;
  /// In file order.
  std::vector<ID3Frame> frames;
  /// The bytes that the tag takes at the start of the file; a footer is not counted.
  std::uint64_t audioOffset = 0;

  bool operator==(const ParsedTag&) const = default;
};

/// Returns the identifiers of the frames that a tag set holds, in ascending order.
std::span<const std::string_view> managed();
/// Returns whether the identifier is one of `managed()`.
bool isManaged(std::string_view id);

/// Returns the tag that the bytes start with, whole-tag unsynchronisation undone and an extended header
/// skipped (ID3v2.3.0 §3.1, §3.2, ID3v2.4.0 structure §3), or nothing if they do not contain a whole tag.
/// Contains the frames up to the first bytes that are no frame or do not fit.
std::optional<ParsedTag> parse(const platform::SharedBytes& data);

/// Returns the file's frames that a tag set does not hold, in file order; none if the file cannot be read or
/// has no tag.
std::vector<ID3Frame> unmanagedFrames(const std::filesystem::path& inFileAt);

/// Returns a whole ID3v2.3 tag with the frames followed by `padding` zero bytes, none for a negative number.
/// Leaves out frames whose identifier does not have four bytes. Throws ID3FrameError, which names `file`, if
/// the sizes do not fit their fields.
platform::Bytes tagData(const std::vector<ID3Frame>& frames, std::int64_t padding,
                        const std::filesystem::path& file);

/// Adds the frames after those in the file's tag and drops its padding; without frames the file is not
/// touched. Throws ID3FrameError, platform::FileError and platform::FileConflict; the file is then as it was.
void append(const std::vector<ID3Frame>& frames, const std::filesystem::path& toFileAt);

/// Writes a file that contains a tag with only these frames and the audio of another file. Throws
/// ID3FrameError, platform::FileError and platform::FileConflict; `to` is then as it was.
void write(const std::vector<ID3Frame>& frames, const std::filesystem::path& withAudioFrom,
           const std::filesystem::path& to);

/// The frames of a tag for which `isManaged` is false. Refers to the tag's bytes, which it keeps alive;
/// however many and small the frames are, it takes no memory for each.
class UnmanagedFrames {
 public:
  /// `tag` is the bytes at the start of a file; there are no frames if no whole tag starts there.
  explicit UnmanagedFrames(const platform::SharedBytes& tag);

  bool empty() const { return size_ == 0; }
  /// Returns the number of bytes that `appendTo` adds.
  std::size_t size() const { return size_; }
  /// Returns the number of bytes that the tag takes at the start of the file; 0 if there is none.
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

/// Replaces the padding of a tag that the engine has written (ID3v2.3, no flags) by the frames. Throws
/// ID3FrameError, which names `file`, if the bytes are no such tag or the new one would be too big.
void appendTo(platform::Bytes& tag, const UnmanagedFrames& frames, const std::filesystem::path& file);

/// Returns a whole ID3v2.3 tag with the frames and no padding. Throws ID3FrameError, which names `file`.
platform::Bytes tagData(const UnmanagedFrames& frames, const std::filesystem::path& file);

}  // namespace ID3Frames

}  // namespace QuillmarkKit
