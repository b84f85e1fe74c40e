#include <string>

#include "ID3TagEditor/ID3TagEditor.h"
#include "fuzz/FuzzTarget.h"
#include "platform/Text.h"

using namespace ID3TagEditor;

namespace {

void requireText(const std::string& text) {
  require(platform::Text::isValidUTF8(text), "a text of a tag is UTF-8");
}

void requireTexts(const std::vector<LocalizedContent>& contents) {
  for (const LocalizedContent& content : contents) {
    requireText(content.contentDescription);
    requireText(content.content);
  }
}

}  // namespace

void fuzzTarget(const platform::SharedBytes& input) {
  static const ::ID3TagEditor::ID3TagEditor editor;
  std::optional<ID3Tag> tag;
  try {
    tag = editor.read(input);
  } catch (const ID3TagEditorError& error) {
    require(error == ID3TagEditorError::corruptedFile, "the only error of reading bytes is a corrupted file");
  }
  if (!tag) return;

  require(tag->properties.size + 10 <= input.size(), "the tag lies inside the bytes");
  requireText(tag->debugDescription());
  const ID3TagContentReader reader(*tag);
  requireTexts(reader.comments());
  requireTexts(reader.unsynchronizedLyrics());
  if (const auto genre = reader.genre()) {
    require(genre->identifier || genre->description, "a genre is a number, a text, or both");
  }
  for (const AttachedPicture& picture : reader.attachedPictures()) {
    require(picture.picture.size() >= 4, "a picture starts with its signature");
  }
  if (const auto moment = reader.recordingDateTime(); moment && moment->day) {
    require(moment->month && moment->year && moment->hour && moment->minute,
            "a day comes with a time of day");
  }
}
