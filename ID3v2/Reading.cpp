#include "ID3v2/Reading.h"

#include <algorithm>

#include "ID3v2/FrameForm.h"
#include "ID3v2/FrameReading.h"
#include "ID3v2/FrameWalk.h"

namespace ID3v2 {

namespace {

using platform::SharedBytes;

/// One interpretation of a tag's body.
struct View {
  /// Whether each frame is unsynchronised, instead of the body as a whole.
  bool areFramesUnsynchronised = false;
  FrameWalk walk;
};

FrameWalk walkBody(const SharedBytes& body, const TagHeader& header) {
  const std::size_t start = header.hasExtendedHeader ? extendedHeaderLength(body, header.version) : 0;
  return walkFrames(body, start, header.version);
}

/// Returns whether the walk certainly found all frames. A walk by wrong sizes may end in padding by chance,
/// but then usually contains something that looks like a v2.2 identifier.
bool isSound(const FrameWalk& walk) {
  return walk.isSound() && std::ranges::none_of(walk.frames, &RawFrame::isOfV22);
}

/// Returns whether `walk` is sound and found at least as many frames as `other`, or more if `other` ends in
/// padding. `other` must not be sound.
bool isSounder(const FrameWalk& walk, const FrameWalk& other) {
  const std::size_t least = other.frames.size() + (other.isComplete ? 1 : 0);
  return isSound(walk) && walk.frames.size() >= least;
}

/// Returns the best interpretation of the body. Unsynchronisation applies to the whole body before v2.4, and
/// to each frame from v2.4 on. Programs confuse the two. So the way of the other version is tried if that of
/// the tag's version does not lead through all frames, unless the flag of a frame confirms it.
View viewOf(const SharedBytes& body, const TagHeader& header) {
  const auto whole = [&] {
    return View{.areFramesUnsynchronised = false,
                .walk = walkBody(SharedBytes(unsynchronisationUndone(body)), header)};
  };
  const auto single = [&] {
    return View{.areFramesUnsynchronised = header.isUnsynchronised, .walk = walkBody(body, header)};
  };
  if (!header.isUnsynchronised) return single();
  if (!isUnsynchronised(body)) {
    return header.version == 4 ? single()
                               : View{.areFramesUnsynchronised = false, .walk = walkBody(body, header)};
  }
  View usual = header.version == 4 ? single() : whole();
  const bool isConfirmed = std::ranges::any_of(usual.walk.frames, [&](const RawFrame& frame) {
    return saysUnsynchronised(frame.flags, header.version);
  });
  if (isSound(usual.walk) || isConfirmed) return usual;
  View unusual = header.version == 4 ? whole() : single();
  return isSounder(unusual.walk, usual.walk) ? unusual : usual;
}

/// Returns the name, in messages, of the data after the last frame, which must not be padding.
std::string tailName(const FrameWalk& walk) {
  const auto last = std::find_if(walk.frames.rbegin(), walk.frames.rend(),
                                 [](const RawFrame& frame) { return !frame.content.empty(); });
  if (last == walk.frames.rend()) return "the data in its tag";
  return "the data after frame " + last->name();
}

bool isFooter(platform::ByteView bytes) {
  return platform::charactersOf(bytes).starts_with("3DI");
}

}  // namespace

std::optional<Reading> read(const SharedBytes& bytes) {
  const auto header = tagHeader(bytes);
  if (!header) return std::nullopt;
  Reading reading{.tag = {.version = header->version, .isExperimental = header->isExperimental, .frames = {}},
                  .length = header->length(),
                  .unreadable = {}};
  const std::size_t bodySize = std::min<std::size_t>(header->bodySize, bytes.size() - tagHeaderSize);
  const SharedBytes body = bytes.slice(tagHeaderSize, bodySize);
  const bool isCutOff = bodySize < header->bodySize;
  if (!isCutOff && header->hasFooter && !isFooter(bytes.view().subspan(tagHeaderSize + bodySize))) {
    // Without a footer, these bytes are audio in spite of the flag.
    reading.length -= tagHeaderSize;
  }
  const View view = viewOf(body, *header);
  FrameReader reader(header->version, view.areFramesUnsynchronised, bodySize);
  reading.tag.frames = reader.read(view.walk.frames);
  reading.unreadable = reader.unreadable();
  if (isCutOff) {
    reading.unreadable.push_back({"", "the cut-off end of its tag"});
  } else if (!view.walk.isComplete) {
    reading.unreadable.push_back({"", tailName(view.walk)});
  }
  return reading;
}

}  // namespace ID3v2
