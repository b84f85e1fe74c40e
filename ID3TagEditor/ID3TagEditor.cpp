#include "ID3TagEditor/ID3TagEditor.h"

#include "ID3TagEditor/create/ID3TagCreator.h"
#include "ID3TagEditor/create/Mp3FileWriter.h"
#include "ID3TagEditor/create/Mp3WithID3TagBuilder.h"
#include "ID3TagEditor/parse/ID3TagParser.h"
#include "ID3TagEditor/parse/Mp3FileReader.h"

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

void ID3TagEditor::write(ID3Tag& tag, const std::filesystem::path& to,
                         const std::optional<std::filesystem::path>& andSaveTo,
                         const TagRevision& revise) const {
  OpenMp3File current = collaborators_->mp3FileReader.open(to);
  platform::Bytes newTag = collaborators_->id3TagCreator.create(tag);
  if (revise) newTag = revise(std::move(newTag));
  collaborators_->mp3FileWriter.write(newTag, current.handle, current.tagLength.value_or(0),
                                      andSaveTo.value_or(to));
}

platform::Bytes ID3TagEditor::write(ID3Tag& tag, const platform::SharedBytes& mp3) const {
  const std::optional<ID3Tag> current = collaborators_->id3TagParser.parse(mp3);
  return collaborators_->mp3WithID3TagBuilder.build(mp3, tag, current);
}

}  // namespace ID3TagEditor
