#pragma once

#include "QuillmarkKit/store/MP3TagStore.h"

namespace QuillmarkKit {

/// Reads and writes tags with the engine; new tags are ID3v2.3. A write keeps the frames of v2.3 and v2.4
/// that belong to no field, byte for byte. Also throws ID3FrameError, which names the file.
class ID3TagEditorStore : public MP3TagStore {
 public:
  explicit ID3TagEditorStore(bool preservesDate);
};

}  // namespace QuillmarkKit
