#include "ID3TagEditor/model/FrameTables.h"

namespace ID3TagEditor {

std::vector<FrameName> FrameName::allCases() {
  std::vector<FrameName> cases;
  for (int kind = title; kind < pictureKind; ++kind) {
    if (kind < beatsPerMinute || kind > sizeInBytes) cases.emplace_back(static_cast<Kind>(kind));
  }
  for (const Kind kind : FrameNamesWithLocalizedContent) {
    for (const ID3FrameContentLanguage language : allLanguages) cases.push_back(localized(kind, language));
  }
  return cases;
}

}  // namespace ID3TagEditor
