#include "ID3TagEditor/model/FrameName.h"

namespace ID3TagEditor {

std::vector<FrameName> FrameName::allCases() {
  std::vector<FrameName> cases;
  for (int name = title; name <= iTunesPodcastKeywords; ++name) {
    if (name < beatsPerMinute || name > sizeInBytes) cases.emplace_back(static_cast<Plain>(name));
  }
  for (const ID3FrameContentLanguage language : allLanguages) cases.push_back(unsynchronizedLyrics(language));
  for (const ID3FrameContentLanguage language : allLanguages) cases.push_back(comment(language));
  return cases;
}

}  // namespace ID3TagEditor
