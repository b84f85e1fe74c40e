#pragma once

#include "QuillmarkKit/store/MP3TagStore.h"

namespace QuillmarkKit {

/// Keeps tag sets as ID3v2.3 tags by way of the engine. Frames that no tag set holds stay in a file through
/// every write, byte for byte. Also throws ID3FrameError, which names the file, too.
class ID3TagEditorStore : public MP3TagStore {
 public:
  explicit ID3TagEditorStore(bool preservesDate);
};

}  // namespace QuillmarkKit
