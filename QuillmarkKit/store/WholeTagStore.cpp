#include "QuillmarkKit/store/WholeTagStore.h"

#include <utility>

#include "QuillmarkKit/store/standard/CopiedTag.h"

namespace QuillmarkKit {

WholeTagStore::WholeTagStore(const std::filesystem::path& source, bool keepsAPETags, bool preservesDate)
    : WholeTagStore(wholeTag(source), keepsAPETags, preservesDate) {
}

WholeTagStore::WholeTagStore(platform::SharedBytes tag, bool keepsAPETags, bool preservesDate)
    : MP3TagStore([tag = std::move(tag), keepsAPETags](
                      MP3File& file) { return std::make_unique<CopiedTag>(file, tag, keepsAPETags); },
                  preservesDate) {
}

}  // namespace QuillmarkKit
