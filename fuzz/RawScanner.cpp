#include "QuillmarkKit/store/ID3Frames.h"

#include <utility>

#include "fuzz/FuzzTarget.h"

namespace ID3Frames = QuillmarkKit::ID3Frames;

void fuzzTarget(const platform::SharedBytes& input) {
  const auto tag = ID3Frames::parse(input);
  if (!tag) return;
  require(tag->audioOffset <= input.size(), "the tag lies inside the bytes");
  std::size_t payloads = 0;
  for (const auto& frame : tag->frames) payloads += frame.payload.size();
  require(payloads + 10 * tag->frames.size() + 10 <= tag->audioOffset, "frames do not overlap");
  if (tag->frames.empty()) return;

  constexpr std::int64_t padding = 16;
  for (const std::int64_t count : {std::int64_t{0}, padding}) {
    const platform::SharedBytes written = ID3Frames::tagData(tag->frames, count, "written.mp3");
    const auto again = ID3Frames::parse(written);
    require(again && again->frames == tag->frames, "written frames are read as they were");
    require(again->version == 3 && again->audioOffset == written.size(), "the whole of it is a tag of v2.3");
  }
  platform::Bytes bare = ID3Frames::tagData(tag->frames, 0, "bare.mp3");
  bare.erase(bare.begin(), bare.begin() + 10);
  const auto appended = ID3Frames::parse(ID3Frames::appending({std::move(bare)}, input, "appended.mp3"));
  auto twice = tag->frames;
  twice.insert(twice.end(), tag->frames.begin(), tag->frames.end());
  require(appended && appended->frames == twice, "appended frames follow those of the tag");
}
