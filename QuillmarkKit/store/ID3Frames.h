#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "QuillmarkKit/store/ManagedFrames.h"
#include "platform/Bytes.h"
#include "platform/FileHandle.h"

namespace QuillmarkKit {

/// One frame of a tag as it stands on disk.
struct ID3Frame {
  /// Four characters from A to Z and 0 to 9.
  std::string id;
  /// The two flag bytes, the first one in the high half.
  std::uint16_t flags = 0;
  /// What follows the frame header, never interpreted.
  platform::SharedBytes payload;

  bool operator==(const ID3Frame&) const = default;
};

/// The frames of a tag as raw bytes, for what no tag set holds. Reads tags of v2.3 and v2.4 (frames of v2.2
/// have another header and are not seen) and writes v2.3. Shares nothing with the engine.
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

/// Whether a tag set holds frames of the identifier: whether it is one of `managed()`.
bool isManaged(std::string_view id);

/// The tag that the bytes start with, whole-tag unsynchronisation undone and an extended header skipped
/// (ID3v2.3.0 §3.1, §3.2, ID3v2.4.0 structure §3). Nothing when the bytes do not hold a whole tag. Frames
/// count up to the first one that does not fit or is none.
std::optional<ParsedTag> parse(const platform::SharedBytes& data);

/// The file's frames that a tag set does not hold, in file order; none when the file cannot be read or has no
/// tag.
std::vector<ID3Frame> unmanagedFrames(const std::filesystem::path& inFileAt);

/// A whole ID3v2.3 tag with the frames and `padding` zero bytes behind them, none for a negative number. A
/// frame whose identifier does not have four bytes is left out. Throws ID3FrameError, which names `file`,
/// when the sizes do not fit their fields.
platform::Bytes tagData(const std::vector<ID3Frame>& frames, std::int64_t padding,
                        const std::filesystem::path& file);

/// Adds the frames behind those in the file's tag and drops its padding; without frames the file is not
/// touched. Throws ID3FrameError, platform::FileError and
/// platform::FileConflict; then the file is as it was.
void append(const std::vector<ID3Frame>& frames, const std::filesystem::path& toFileAt);

/// Writes a file that holds a tag with only these frames and the audio of another. Throws ID3FrameError,
/// platform::FileError and platform::FileConflict; then `to` is as it was.
void write(const std::vector<ID3Frame>& frames, const std::filesystem::path& withAudioFrom,
           const std::filesystem::path& to);

/// Frames as they stand in an ID3v2.3 tag, one behind another: what a write carries over needs no more memory
/// than the tag that it comes from, however small and many its frames are.
struct FrameData {
  platform::Bytes bytes;
  /// The bytes that their tag takes at the start of the file.
  std::uint64_t audioStart = 0;
};

/// What `unmanagedFrames` gives, from an open file's start. Throws platform::FileError and
/// platform::FileConflict: who is about to replace the file must not take a failed read for a tag without
/// such frames.
FrameData unmanagedFrameData(platform::FileHandle& file);

/// The tag's frames followed by `frames`, without padding, as a whole ID3v2.3 tag. Throws ID3FrameError,
/// which names `file`, when the bytes are no tag or the new one would be too big.
platform::Bytes appending(const FrameData& frames, const platform::SharedBytes& tag,
                          const std::filesystem::path& file);

/// A whole ID3v2.3 tag with the frames and no padding. Throws ID3FrameError, which names `file`.
platform::Bytes tagData(const FrameData& frames, const std::filesystem::path& file);

}  // namespace ID3Frames

}  // namespace QuillmarkKit
