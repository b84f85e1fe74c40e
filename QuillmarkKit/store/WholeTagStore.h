#pragma once

#include "QuillmarkKit/store/MP3TagStore.h"

namespace QuillmarkKit {

/// Writes the whole ID3v2 tag of another file, byte for byte, whichever fields a change concerns. Reads tags
/// by the ID3v2 standards.
class WholeTagStore : public MP3TagStore {
 public:
  /// Reads the tag of `source`. Throws the errors of `read`, and LosslessError if there is no ID3v2 tag or a
  /// part of it is damaged. If `keepsAPETags`, a write throws LosslessError if the new tag would hide an APE
  /// tag.
  WholeTagStore(const std::filesystem::path& source, bool keepsAPETags, bool preservesDate);

 private:
  WholeTagStore(platform::SharedBytes tag, bool keepsAPETags, bool preservesDate);
};

}  // namespace QuillmarkKit
