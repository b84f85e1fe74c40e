#include "QuillmarkKit/store/ID3TagEditorStore.h"

#include "ID3TagEditor/ID3TagEditor.h"
#include "QuillmarkKit/store/engine/EngineTag.h"

namespace QuillmarkKit {

ID3TagEditorStore::ID3TagEditorStore(bool preservesDate)
    : MP3TagStore([editor = std::make_shared<const ID3TagEditor::ID3TagEditor>()](
                      MP3File& file) { return std::make_unique<EngineTag>(*editor, file); },
                  preservesDate) {
}

}  // namespace QuillmarkKit
