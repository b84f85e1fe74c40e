#include "ID3TagEditor/ID3TagEditor.h"

#include "ID3TagEditor/create/MP3Writing.h"
#include "ID3TagEditor/create/TagCreation.h"
#include "ID3TagEditor/model/ID3TagEditorError.h"
#include "ID3TagEditor/parse/FrameWalk.h"
#include "ID3TagEditor/parse/MP3Reading.h"

namespace ID3TagEditor {

struct ID3TagEditor::Collaborators {
  ID3TagParser id3TagParser = ID3TagParserFactory::make();
  ID3TagCreator id3TagCreator = ID3TagCreatorFactory::make();
  Mp3FileReader mp3FileReader = Mp3FileReaderFactory::make();
  Mp3FileWriter mp3FileWriter;
  Mp3WithID3TagBuilder mp3WithID3TagBuilder{id3TagCreator};
};

ID3TagEditor::ID3TagEditor() : collaborators_(std::make_unique<const Collaborators>()) {
}

ID3TagEditor::~ID3TagEditor() = default;

std::optional<ID3Tag> ID3TagEditor::read(const std::filesystem::path& from) const {
  std::optional<platform::Bytes> tag = collaborators_->mp3FileReader.readID3TagFrom(from);
  if (!tag) return std::nullopt;
  return collaborators_->id3TagParser.parse(std::move(*tag));
}

std::optional<ID3Tag> ID3TagEditor::read(const platform::SharedBytes& mp3) const {
  return collaborators_->id3TagParser.parse(mp3);
}

std::optional<std::uint64_t> ID3TagEditor::tagLength(platform::FileHandle& of) const {
  return collaborators_->mp3FileReader.tagLength(of);
}

void ID3TagEditor::write(ID3Tag& tag, const std::filesystem::path& to,
                         const std::optional<std::filesystem::path>& andSaveTo) const {
  requireMp3Extension(to);
  platform::FileHandle current = platform::FileHandle::forReading(to);
  const std::uint64_t audioStart = tagLength(current).value_or(0);
  const platform::Bytes newTag = tagData(tag);
  collaborators_->mp3FileWriter.write(newTag, current, audioStart, andSaveTo);
}

platform::Bytes ID3TagEditor::tagData(ID3Tag& tag, std::size_t spare) const {
  return collaborators_->id3TagCreator.create(tag, spare);
}

platform::Bytes ID3TagEditor::write(ID3Tag& tag, const platform::SharedBytes& mp3) const {
  const std::optional<ID3Tag> current = collaborators_->id3TagParser.parse(mp3);
  return collaborators_->mp3WithID3TagBuilder.build(mp3, tag, current);
}

}  // namespace ID3TagEditor
