// Changes the title of an MP3 file and keeps the other frames: change-title TITLE FILE

#include <exception>
#include <iostream>
#include <memory>

#include <ID3TagEditor/ID3TagEditor.h>

using namespace ID3TagEditor;

int main(int count, char** arguments) {
  if (count != 3) {
    std::cerr << "Usage: change-title TITLE FILE\n";
    return 1;
  }
  try {
    const ::ID3TagEditor::ID3TagEditor editor;
    // A write replaces the whole tag, so it starts from the tag that is there.
    ID3Tag tag = editor.read(arguments[2]).value_or(ID3Tag(ID3Version::version3));
    tag.frames[FrameName::title] = std::make_shared<ID3FrameWithStringContent>(arguments[1]);
    // This loses frames of kinds that the engine does not know. QuillmarkKit keeps these.
    editor.write(tag, arguments[2]);
  } catch (const ID3TagEditorError& error) {
    // The only error that does not name the file.
    std::cerr << arguments[2] << ": " << error.what() << '\n';
    return 1;
  } catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 1;
  }
  return 0;
}
