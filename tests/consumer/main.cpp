#include <filesystem>

#include "ID3TagEditor/ID3TagEditor.h"
#include "QuillmarkKit/store/ID3TagEditorStore.h"

// Ends with 0 when the kit and the engine read the same title from the file.
int main(int, char** arguments) {
  const std::filesystem::path file = arguments[1];
  const auto tag = ID3TagEditor::ID3TagEditor().read(file);
  const auto tags = QuillmarkKit::ID3TagEditorStore(true).read(file);
  return tag && tags.title && ID3TagEditor::ID3TagContentReader(*tag).title() == tags.title ? 0 : 1;
}
