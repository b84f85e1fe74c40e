#include "ID3TagEditor/parse/MP3Reading.h"

#include "ID3TagEditor/model/ID3TagEditorError.h"

namespace ID3TagEditor {

using platform::Bytes;
using platform::FileHandle;

std::optional<Bytes> Mp3FileReader::readID3TagFrom(const std::filesystem::path& path) const {
  requireMp3Extension(path);
  FileHandle file = FileHandle::forReading(path);
  const std::optional<std::uint64_t> length = tagLength(file);
  if (!length) return std::nullopt;
  Bytes tag = file.readFirst(static_cast<std::size_t>(*length));
  if (tag.size() != *length) throw ID3TagEditorError(ID3TagEditorError::corruptedFile);
  return tag;
}

std::optional<std::uint64_t> Mp3FileReader::tagLength(FileHandle& file) const {
  const platform::ByteView start = file.start();
  if (start.size() < ID3TagConfiguration::headerSize()) {
    throw ID3TagEditorError(ID3TagEditorError::corruptedFile);
  }
  const platform::ByteView header = start.first(ID3TagConfiguration::headerSize());
  if (!tagPresence_.isTagPresentIn(header, tagVersionParser_.parse(header))) return std::nullopt;
  const std::uint64_t length =
      std::uint64_t{tagSizeParser_.parse(header)} + ID3TagConfiguration::headerSize();
  if (length > file.size()) throw ID3TagEditorError(ID3TagEditorError::corruptedFile);
  return length;
}

}  // namespace ID3TagEditor
