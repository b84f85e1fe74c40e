#include "ID3TagEditor/ID3TagEditor.h"
#include "ID3TagEditor/model/FrameLayouts.h"
#include "fuzz/FuzzTarget.h"
#include "fuzz/ReadingRules.h"
#include "platform/base/Strings.h"

using namespace ID3TagEditor;
using platform::SharedBytes;

namespace {

const ::ID3TagEditor::ID3TagEditor& editor() {
  static const ::ID3TagEditor::ID3TagEditor editor;
  return editor;
}

/// Returns the input with its tag replaced by `tag`, or nothing if the tag has no frame that can be written.
std::optional<SharedBytes> written(ID3Tag& tag, const SharedBytes& input) {
  try {
    return editor().write(tag, input);
  } catch (const ID3TagEditorError& error) {
    require(error == ID3TagEditorError::invalidTagData, "a tag that was read is too small to be too big");
    return std::nullopt;
  }
}

ID3Tag readBack(const SharedBytes& bytes) {
  auto tag = editor().read(bytes);
  require(tag.has_value(), "a tag that was written is read");
  return std::move(*tag);
}

/// Removes the frames that are not read from a written tag as they were.
void keepLasting(ID3Tag& tag) {
  const ID3TagContentReader reader(tag);
  const auto dayMonth = reader.recordingDayMonth();
  const auto hourMinute = reader.recordingHourMinute();
  const auto dateTime = reader.recordingDateTime();
  // Incomplete values are not written.
  if (dayMonth && !(dayMonth->day && dayMonth->month)) tag.frames.erase(FrameName::recordingDayMonth);
  if (hourMinute && !(hourMinute->hour && hourMinute->minute))
    tag.frames.erase(FrameName::recordingHourMinute);
  if (dateTime && !dateTime->year) tag.frames.erase(FrameName::recordingDateTime);
  std::erase_if(tag.frames, [](const auto& entry) {
    const auto* number = dynamic_cast<const ID3FrameWithIntegerContent*>(entry.second.get());
    return (number != nullptr && !number->value()) || fuzz::isReadOtherwise(*entry.second);
  });
}

}  // namespace

void fuzzTarget(const SharedBytes& input) {
  std::optional<ID3Tag> tag;
  try {
    tag = editor().read(input);
  } catch (const ID3TagEditorError& error) {
    require(error == ID3TagEditorError::corruptedFile, "the only error of reading bytes is a corrupted file");
  }
  if (!tag) return;
  require(tag->properties.size + ID3TagConfiguration::headerSize() <= input.size(), "the tag lies inside");
  require(platform::Strings::isValidUTF8(tag->debugDescription()), "the texts of a tag are UTF-8");
  const auto audio = input.view().subspan(tag->properties.size + ID3TagConfiguration::headerSize());

  keepLasting(*tag);
  const auto first = written(*tag, input);
  if (!first) return;
  ID3Tag back = readBack(*first);
  require(platform::charactersOf(*first).ends_with(platform::charactersOf(audio)), "the audio stays");
  require(back.debugDescription() == tag->debugDescription(), "all values come back");
  require(ID3TagContentReader(back).attachedPictures() == ID3TagContentReader(*tag).attachedPictures(),
          "all pictures come back");
  require(written(back, *first) == first, "a later round gives the same bytes");
}
