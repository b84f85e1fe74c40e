#include "QuillmarkKit/store/standard/TagNotes.h"

#include <algorithm>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <variant>
#include <vector>

#include "QuillmarkKit/store/file/FieldFrames.h"
#include "QuillmarkKit/store/standard/LosslessConversion.h"
#include "QuillmarkKit/store/standard/TagTexts.h"

namespace QuillmarkKit {

using ID3v2::Frame;
using ID3v2::LanguageText;
using ID3v2::Picture;
using ID3v2::Tag;

namespace {

/// Returns the names of the parts that a date such as "2004-05-06T12:30" has besides its year.
std::string_view partsBeyondYear(std::string_view date) {
  if (date.find('T') != std::string_view::npos) return "day, month and time";
  switch (std::ranges::count(date, '-')) {
    case 0:
      return "";
    case 1:
      return "month";
    default:
      return "day and month";
  }
}

}  // namespace

std::string beyondFields(const Tag& tag) {
  const TagFields fields = LosslessConversion::fieldsOf(tag).populatedFields();
  std::vector<const Frame*> shown;
  for (const TagField field : {TagField::comment, TagField::lyrics, TagField::artwork}) {
    if (fields.contains(field)) shown.push_back(LosslessConversion::shownFrameOf(tag, field));
  }
  // A tag can contain several comments, lyrics and pictures, but a field has only one.
  const auto isOfAField = [&](const Frame& frame) {
    if (std::holds_alternative<Picture>(frame.content) || std::holds_alternative<LanguageText>(frame.content))
      return std::ranges::count(shown, &frame) != 0;
    return FieldFrames::isOfTheDate(frame.identifier) || FieldFrames::areOfAField(frame.identifier);
  };
  struct Count {
    std::string one;
    std::string many;
    std::size_t number;
  };
  std::vector<Count> counts;
  std::unordered_map<std::string, std::size_t> places;
  for (const Frame& frame : tag.frames) {
    if (isOfAField(frame)) continue;
    Count count{.one = frame.identifier, .many = frame.identifier, .number = 0};
    if (const auto* picture = std::get_if<Picture>(&frame.content)) {
      const std::string type = " (" + std::string(TagDescriptions::pictureType(picture->type)) + ")";
      count = {.one = "a picture" + type, .many = "pictures" + type, .number = 0};
    }
    const auto [place, isNew] = places.try_emplace(count.one, counts.size());
    if (isNew) counts.push_back(std::move(count));
    ++counts[place->second].number;
  }
  std::string items;
  const auto add = [&](const std::string& item) { items += (items.empty() ? "" : ", ") + item; };
  for (const auto& [one, many, number] : counts) {
    add(number == 1 ? one : std::to_string(number) + " " + many);
  }
  if (const std::string_view parts = partsBeyondYear(TagTexts::dateIn(tag)); !parts.empty())
    add("the " + std::string(parts) + " of its date");
  return items;
}

}  // namespace QuillmarkKit
