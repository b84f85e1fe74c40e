#include "QuillmarkKit/store/LosslessTagStore.h"

#include "QuillmarkKit/store/standard/StandardTag.h"

namespace QuillmarkKit {

LosslessTagStore::LosslessTagStore(bool preservesDate)
    : MP3TagStore([](MP3File& file) { return std::make_unique<StandardTag>(file); }, preservesDate) {
}

TagSet LosslessTagStore::accepted(const TagSet& tags, TagFields fields) const {
  return acceptedTags(tags, fields);
}

}  // namespace QuillmarkKit
