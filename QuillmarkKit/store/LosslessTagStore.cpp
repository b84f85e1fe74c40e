#include "QuillmarkKit/store/LosslessTagStore.h"

#include <string_view>

#include "ID3v2/Reading.h"
#include "QuillmarkKit/store/standard/LosslessError.h"
#include "QuillmarkKit/store/standard/StandardTag.h"
#include "platform/FileHandle.h"

namespace QuillmarkKit {

LosslessTagStore::LosslessTagStore(bool preservesDate)
    : MP3TagStore([](MP3File& file) { return std::make_unique<StandardTag>(file); }, preservesDate) {
}

TagSet LosslessTagStore::accepted(const TagSet& tags, TagFields fields) const {
  return acceptedTags(tags, fields);
}

void LosslessTagStore::explainUnsupported(const std::filesystem::path& path) const {
  constexpr std::size_t searchedSize = 0x10000;
  const platform::Bytes start = platform::FileHandle::forReading(path).readFirst(searchedSize);
  const platform::ByteView bytes = start;
  for (std::size_t at = 0; (at = platform::charactersOf(bytes).find("ID3", at)) != std::string_view::npos;
       ++at) {
    if (ID3v2::tagLength(bytes.subspan(at))) throw LosslessError::tagIsNotInFront(path);
  }
}

}  // namespace QuillmarkKit
