#pragma once

#include "QuillmarkKit/store/MP3TagStore.h"

namespace QuillmarkKit {

/// Gives files the whole ID3v2 tag of another file, byte for byte. A write replaces the file's tag whichever
/// fields it changes. Tag sets are read by the ID3v2 standards.
class WholeTagStore : public MP3TagStore {
 public:
  /// Reads the tag of `source`. Throws what `read` throws, and LosslessError if there is no ID3v2 tag or a
  /// part of it is damaged. If `keepsAPETags`, a write throws LosslessError where the new tag would hide an
  /// APE tag.
  WholeTagStore(const std::filesystem::path& source, bool keepsAPETags, bool preservesDate);

 private:
  WholeTagStore(platform::SharedBytes tag, bool keepsAPETags, bool preservesDate);
};

}  // namespace QuillmarkKit
