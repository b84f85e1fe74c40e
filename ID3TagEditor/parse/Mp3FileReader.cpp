#include "ID3TagEditor/parse/Mp3FileReader.h"

#include "ID3TagEditor/model/ID3TagEditorError.h"
#include "ID3TagEditor/model/Mp3Extension.h"

namespace ID3TagEditor {

using platform::Bytes;
using platform::FileHandle;

void Mp3FileReader::read(std::uint64_t bytesCount, FileHandle& file, Bytes& bytes) {
  // A size field alone must not allocate: what the file does not have is not asked for.
  if (bytesCount > file.size() || file.readOnto(bytes, bytesCount) != bytesCount) {
    throw ID3TagEditorError(ID3TagEditorError::corruptedFile);
  }
}

std::optional<std::uint64_t> Mp3FileReader::tagLengthIn(const Bytes& header) const {
  if (!tagPresence_->isTagPresentIn(header, tagVersionParser_->parse(header))) return std::nullopt;
  return std::uint64_t{tagSizeParser_->parse(header)} + ID3TagConfiguration::headerSize();
}

std::optional<Bytes> Mp3FileReader::readID3TagFrom(const std::filesystem::path& path) const {
  requireMp3Extension(path);
  FileHandle file = FileHandle::forReading(path);
  Bytes tag;
  read(ID3TagConfiguration::headerSize(), file, tag);
  const std::optional<std::uint64_t> length = tagLengthIn(tag);
  if (!length) return std::nullopt;
  read(*length - tag.size(), file, tag);
  return tag;
}

OpenMp3File Mp3FileReader::open(const std::filesystem::path& path) const {
  requireMp3Extension(path);
  FileHandle file = FileHandle::forReading(path);
  Bytes header;
  read(ID3TagConfiguration::headerSize(), file, header);
  const std::optional<std::uint64_t> length = tagLengthIn(header);
  if (length && *length > file.size()) throw ID3TagEditorError(ID3TagEditorError::corruptedFile);
  return {std::move(file), length};
}

Mp3FileReader Mp3FileReaderFactory::make() {
  return {std::make_unique<ID3TagSizeParser>(), std::make_unique<ID3TagVersionParser>(),
          std::make_unique<ID3TagPresence>()};
}

}  // namespace ID3TagEditor
