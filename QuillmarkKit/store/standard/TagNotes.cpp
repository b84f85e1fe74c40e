#include "QuillmarkKit/store/standard/TagNotes.h"

#include <algorithm>
#include <array>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "ID3v2/FrameForm.h"
#include "ID3v2/Reading.h"
#include "QuillmarkKit/store/standard/TagTexts.h"
#include "platform/base/Formats.h"
#include "platform/base/Strings.h"

namespace QuillmarkKit::TagNotes {

namespace Strings = platform::Strings;
using ID3v2::Frame;
using ID3v2::LanguageText;
using ID3v2::Picture;
using ID3v2::Tag;
using PlainValues::haveSameValues;
using TagDifferences::Difference;
using Kind = Difference::Kind;

namespace {

/// The names of picture types by their numbers (ID3v2.4.0 frames §4.14).
constexpr std::array<std::string_view, 21> pictureTypes{
    "other picture", "file icon",     "other file icon",  "front cover", "back cover",  "leaflet page",
    "media",         "lead artist",   "artist",           "conductor",   "band",        "composer",
    "lyricist",      "location",      "recording",        "performance", "video frame", "bright fish",
    "illustration",  "artist's logo", "publisher's logo",
};

/// Returns the format by the signature of the data, because the MIME type may be wrong. If no signature
/// matches, returns a name from the MIME type, such as "JXL" for "image/jxl".
std::string formatOf(const ID3v2::Picture& picture) {
  if (picture.mimeType == "-->") return "a link";
  const std::string_view format =
      platform::formatOf(platform::charactersOf(picture.data), platform::describedPicture);
  if (!format.empty()) return std::string(format);
  constexpr std::string_view prefix = "image/";
  std::string_view type = picture.mimeType;
  if (type.starts_with(prefix)) type.remove_prefix(prefix.size());
  if (type.empty()) return "of unknown format";
  std::string name(type);
  std::ranges::transform(name, name.begin(), Strings::toASCIIUpper);
  return name;
}

std::string_view pictureType(std::uint8_t number) {
  return number < pictureTypes.size() ? pictureTypes[number] : pictureTypes[0];
}

std::string describePicture(const Picture& picture) {
  return std::string(pictureType(picture.type)) + ", " + formatOf(picture) + ", " +
         std::to_string(picture.data.size()) + " bytes";
}

/// Returns the name of the field that frames with this identifier contain, such as "title", or the identifier
/// itself if they contain none, such as "TSOP".
std::string nameOf(const std::string& identifier) {
  const auto* const field = std::ranges::find(allTagFields, identifier, frameIdentifier);
  if (field == allTagFields.end()) return identifier;
  const std::string name = nameInSentence(*field);
  // One frame contains the number and the total of a track.
  return name.substr(0, name.find(" number"));
}

void addTo(std::string& text, std::string_view joint, std::string_view more) {
  if (!text.empty()) text += joint;
  text += more;
}

std::string joined(const std::vector<std::string>& items) {
  std::string text;
  for (const std::string& item : items) addTo(text, ", ", item);
  return text;
}

/// Things of one kind, which are reported together, in the order of their first ones.
class Groups {
 public:
  void add(const std::string& one, const std::string& many, std::string name = {}) {
    const auto [place, isNew] = places_.try_emplace(one, groups_.size());
    if (isNew) groups_.push_back({one, many, {}});
    groups_[place->second].names.push_back(std::move(name));
  }

  /// Returns an item for each kind: "a picture", "2 pictures", or "2 pictures (names)".
  std::vector<std::string> items() const {
    std::vector<std::string> items;
    for (const auto& [one, many, names] : groups_) {
      std::string item = names.size() == 1 ? one : std::to_string(names.size()) + " " + many;
      if (!names.front().empty()) item += " (" + list(names) + ")";
      items.push_back(std::move(item));
    }
    return items;
  }

 private:
  struct Group {
    std::string one;
    std::string many;
    std::vector<std::string> names;
  };

  static std::string list(const std::vector<std::string>& names) {
    constexpr std::size_t limit = 5;
    std::string text;
    for (std::size_t i = 0; i < names.size() && i <= limit; ++i) {
      // Descriptions of pictures contain commas.
      if (i > 0) text += names[i].starts_with('"') ? ", " : "; ";
      text += i < limit ? names[i] : "…";
    }
    return text;
  }

  std::vector<Group> groups_;
  std::unordered_map<std::string, std::size_t> places_;
};

std::string_view nameOfFlag(std::uint16_t flag) {
  if (flag == ID3v2::compressionFlag) return "compression";
  return flag == ID3v2::encryptionFlag ? "encryption" : "group";
}

}  // namespace

std::string inQuotes(std::string_view text) {
  constexpr std::size_t limit = 60;
  std::string shown = "\"";
  std::size_t count = 0;
  text = Strings::trimmingNulls(Strings::trimmingWhiteSpace(text));
  while (!text.empty()) {
    if (count++ == limit) {
      shown += "…";
      break;
    }
    const std::size_t length = Strings::firstCharacter(text).length;
    const char first = text.front();
    if (first == '\0') {
      shown += " / ";
    } else if (first == '\n' || first == '\r') {
      shown += ' ';
    } else {
      shown += text.substr(0, length);
    }
    text.remove_prefix(length);
  }
  return shown + "\"";
}

std::string describe(const LosslessConversion::Unrepresentable& value) {
  if (value.picture != nullptr) return "(" + describePicture(*value.picture) + ")";
  return value.text.empty() ? "that cannot be read" : inQuotes(value.text);
}

std::string_view expectedValue(TagField field) {
  if (field == TagField::year) return "a year of four digits";
  return dispatch(
      field, [](TextMember) { return "text"; }, [](NumberMember) { return "a number"; },
      [] { return "a JPEG or PNG"; });
}

Losses describe(const std::vector<Difference>& differences) {
  Groups dropped;
  std::vector<std::string> changed;
  const auto addText = [&](const std::string& what, const Difference& difference) {
    const std::string before = inQuotes(difference.before);
    const std::string after = inQuotes(difference.after);
    // If the new text only looks the same, other readers do not understand it, so the old one is lost.
    if (TagTexts::isBlank(difference.after) || before == after) {
      dropped.add("the " + what + " " + before, "");
    } else {
      changed.push_back(what + " " + before + " becomes " + after);
    }
  };
  for (const Difference& difference : differences) {
    const Frame* frame = difference.frame;
    const auto* text = frame != nullptr ? std::get_if<LanguageText>(&frame->content) : nullptr;
    const auto* picture = frame != nullptr ? std::get_if<Picture>(&frame->content) : nullptr;
    const bool isComment = frame != nullptr && frame->identifier == "COMM";
    const std::string ofText = isComment ? " of a comment" : " of the lyrics";
    switch (difference.kind) {
      case Kind::frame:
        dropped.add("a " + frame->identifier + " frame", frame->identifier + " frames");
        break;
      case Kind::flag: {
        const std::string name(nameOfFlag(difference.flag));
        dropped.add("the " + name + " flag of a " + frame->identifier + " frame",
                    name + " flags of " + frame->identifier + " frames");
        break;
      }
      case Kind::userText:
        dropped.add("a user text", "user texts",
                    inQuotes(std::get<ID3v2::UserText>(frame->content).description));
        break;
      case Kind::languageText:
        dropped.add(isComment ? "a comment" : "lyrics", isComment ? "comments" : "lyrics",
                    inQuotes(text->description.empty() ? text->text : text->description));
        break;
      case Kind::description:
        dropped.add("the description " + inQuotes(text->description) + ofText, "");
        break;
      case Kind::language:
        dropped.add("the language " + inQuotes(PlainValues::plainLanguage(text->language)) + ofText, "");
        break;
      case Kind::picture:
        dropped.add("a picture", "pictures", describePicture(*picture));
        break;
      case Kind::pictureType:
        changed.push_back("a picture (" + describePicture(*picture) + ") becomes the " +
                          std::string(pictureType(difference.other->type)));
        break;
      case Kind::pictureDescription:
        dropped.add("the description " + inQuotes(picture->description) + " of a picture", "");
        break;
      case Kind::text:
        addText(nameOf(frame->identifier), difference);
        break;
      case Kind::date:
        addText("date", difference);
        break;
    }
  }
  return {.dropped = dropped.items(), .changed = std::move(changed)};
}

namespace {

/// Clears the description and language of a comment or of lyrics, and the description of a picture, if the
/// change replaces them: their loss is expected.
void forgetOldDescriptions(Tag& tag, const TagSet& wanted, TagFields requested) {
  TagFields rest = requested;
  const auto isReplaced = [&](TagField field, bool isNew) {
    if (!isNew || !rest.contains(field)) return false;
    rest = rest.without({field});
    return true;
  };
  for (Frame& frame : tag.frames) {
    if (auto* picture = std::get_if<Picture>(&frame.content)) {
      if (isReplaced(TagField::artwork, wanted.artwork && picture->data == wanted.artwork->data))
        picture->description.clear();
    } else if (auto* text = std::get_if<LanguageText>(&frame.content)) {
      const bool isComment = frame.identifier == "COMM";
      if (isReplaced(isComment ? TagField::comment : TagField::lyrics,
                     text->text == (isComment ? wanted.comment : wanted.lyrics))) {
        text->description.clear();
        text->language.clear();
      }
    }
  }
}

/// Returns a clause about a date of v2.4 that stays in the tag although the year has changed, or an empty
/// text.
std::string oldDateBeside(const Tag& tag, const TagSet::Number& year, TagFields requested) {
  const std::string date = TagTexts::firstValue(tag, "TDRC");
  if (!year || !requested.contains(TagField::year) || date.empty() || TagTexts::yearIn(date) == year)
    return "";
  return "the old date " + date + " (TDRC) stays beside the new year " + std::to_string(*year) +
         "; --lossless replaces it";
}

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

std::string beyondFields(const Tag& tag) {
  const TagFields fields = LosslessConversion::fieldsOf(tag).populatedFields();
  std::vector<const Frame*> shown;
  for (const TagField field : {TagField::comment, TagField::lyrics, TagField::artwork}) {
    if (fields.contains(field)) shown.push_back(LosslessConversion::shownFrameOf(tag, field));
  }
  Groups groups;
  for (const Frame& frame : tag.frames) {
    const auto* picture = std::get_if<Picture>(&frame.content);
    // A tag can contain several comments, lyrics and pictures, but a field has only one.
    const bool belongsToField = picture != nullptr || std::holds_alternative<LanguageText>(frame.content)
                                    ? std::ranges::count(shown, &frame) != 0
                                    : isDateFrame(frame.identifier) || isFieldFrame(frame.identifier);
    if (belongsToField) continue;
    if (picture != nullptr) {
      const std::string type = " (" + std::string(pictureType(picture->type)) + ")";
      groups.add("a picture" + type, "pictures" + type);
    } else {
      groups.add(frame.identifier, frame.identifier);
    }
  }
  std::string items = joined(groups.items());
  if (const std::string_view parts = partsBeyondYear(TagTexts::dateIn(tag)); !parts.empty())
    addTo(items, ", ", "the " + std::string(parts) + " of its date");
  return items;
}

std::string misread(const FileTags& tags, const TagSet& read, TagFields selected) {
  const Tag& tag = tags.tag;
  const TagSet meant = LosslessConversion::fieldsOf(tag);
  std::string sentence;
  bool canBeCarried = true;
  for (const TagField field : allTagFields) {
    if (!selected.contains(field)) continue;
    std::optional<std::string> shown = meant.value(field);
    const std::string readAs = read.value(field).value_or("");
    if (shown) {
      const bool isSame = field == TagField::artwork ? meant.artwork == read.artwork
                                                     : haveSameValues(frameIdentifier(field), *shown, readAs);
      if (isSame) continue;
      shown = stringKeyPath(field) != nullptr ? inQuotes(*shown)
              : field == TagField::artwork    ? "(" + *shown + ")"
                                              : *shown;
    } else {
      const auto value = LosslessConversion::unrepresentableValue(tag, meant, field);
      if (!value) continue;
      shown = describe(*value);
      canBeCarried = false;
    }
    const bool isYear = field == TagField::year;
    const std::string what = isYear ? "date " + TagTexts::dateIn(tag) : nameInSentence(field) + " " + *shown;
    addTo(sentence, ", ", "its " + what + (readAs.empty() ? " is not read" : " is read"));
    if (isYear) sentence += readAs.empty() ? " as a year" : " as the year " + readAs;
    if (!isYear && !readAs.empty()) sentence += " as " + inQuotes(readAs);
  }
  constexpr std::size_t mostParts = 5;
  std::size_t count = 0;
  for (const std::string& part : tags.unreadablePartsFor(selected)) {
    if (count == mostParts) sentence += ", …";
    if (count++ < mostParts) addTo(sentence, ", ", part + " is not read");
    canBeCarried = false;
  }
  if (sentence.empty()) return sentence;
  return sentence + (canBeCarried ? ". --lossless carries them." : ".");
}

}  // namespace

std::string ofWriting(FileTags old, const TagSet& wanted, TagFields requested,
                      const platform::SharedBytes& newTag) {
  LosslessConversion::setFields(old.tag, wanted, requested);
  forgetOldDescriptions(old.tag, wanted, requested);
  auto found = ID3v2::read(newTag).value_or(ID3v2::Reading());
  std::string sentence = oldDateBeside(found.tag, wanted.year, requested);
  if (!sentence.empty()) {
    std::erase_if(found.tag.frames, [](const Frame& frame) { return frame.identifier == "TDRC"; });
  }
  const bool isOnlyDate = !sentence.empty();
  Losses losses = describe(TagDifferences::between(old.tag, found.tag));
  const auto add = [&](const std::string& clause) { addTo(sentence, "; ", clause); };
  if (!old.hasID3v2Tag) {
    if (!losses.dropped.empty()) add("hides its ID3v1 tag (" + joined(losses.dropped) + ")");
    if (old.hasAPETag) add("hides its APE tag");
  } else {
    std::unordered_set<std::string_view> unreadable;
    for (const ID3v2::UnreadablePart& part : found.unreadable) unreadable.insert(part.what);
    for (const ID3v2::UnreadablePart& part : old.unreadable) {
      if (!unreadable.contains(part.what)) losses.dropped.push_back(part.what);
    }
    if (!losses.dropped.empty()) add("drops " + joined(losses.dropped));
  }
  for (const std::string& clause : losses.changed) add(clause);
  if (sentence.empty()) return sentence;
  if (isOnlyDate && losses.dropped.empty() && losses.changed.empty() && old.hasID3v2Tag)
    return sentence + ".";
  const bool canBeKept = old.isWritable() && !old.hasAPETag;
  return sentence + (canBeKept ? ". --lossless keeps them." : ".");
}

std::string ofRemoving(const Tag& tag, const TagSet& values, TagFields fields) {
  std::string sentence;
  for (const TagField field : allTagFields) {
    const auto value =
        fields.contains(field) ? LosslessConversion::unrepresentableValue(tag, values, field) : std::nullopt;
    if (value) addTo(sentence, "; ", "drops its " + nameInSentence(field) + " " + describe(*value));
  }
  return sentence.empty() ? sentence : sentence + ".";
}

SourceNotes ofSource(const FileTags& tags, const TagSet& read, TagFields selected) {
  return {.misread = misread(tags, read, selected), .beyondFields = beyondFields(tags.tag)};
}

}  // namespace QuillmarkKit::TagNotes
