#include "QuillmarkKit/store/standard/TagLosses.h"

#include <algorithm>
#include <array>
#include <set>
#include <utility>

#include "ID3v2/Reading.h"
#include "QuillmarkKit/store/file/FieldFrames.h"
#include "QuillmarkKit/store/standard/LosslessConversion.h"
#include "QuillmarkKit/store/standard/TagDescriptions.h"
#include "QuillmarkKit/store/standard/TagTexts.h"
#include "platform/Text.h"

namespace QuillmarkKit::TagLosses {

using ID3v2::Frame;
using ID3v2::LanguageText;
using ID3v2::Picture;
using ID3v2::Tag;
using ID3v2::UserText;
using TagDescriptions::inQuotes;

namespace {

/// The number without zeros in front; a text that is none as it is.
std::string plainNumber(std::string_view text) {
  const auto number = platform::Text::decimalInteger(text);
  return number ? std::to_string(*number) : std::string(text);
}

/// What "R&B" and "R And B", "Hip-Hop" and "Hip Hop" have in common.
std::string squashed(std::string_view genre) {
  std::string letters;
  for (const char c : genre) {
    if (c == '&') {
      letters += "and";
    } else if (c != ' ' && c != '-') {
      letters += platform::Text::toASCIILower(c);
    }
  }
  return letters;
}

/// A value of a text frame in one form for all ways to write it.
std::string plainValue(std::string_view identifier, std::string_view value) {
  value = platform::Text::trimmingBlanks(value);
  if (identifier == "TCON") return squashed(value);
  if (identifier == "TBPM") return plainNumber(value);
  if (identifier != "TRCK" && identifier != "TPOS") return std::string(value);
  TagTexts::Position position = TagTexts::positionIn(value);
  position.number = plainNumber(position.number);
  position.total = plainNumber(position.total);
  if (position.total == "0") position.total.clear();
  return position.text();
}

/// In their order, each once.
std::vector<std::string> valuesOf(std::string_view identifier, std::string_view text) {
  std::vector<std::string> values;
  std::set<std::string> known{""};
  TagTexts::forEachValue(identifier == "TCON" ? TagTexts::genresIn(text) : std::string(text),
                         [&](std::string_view value) {
                           std::string plain = plainValue(identifier, value);
                           if (known.insert(plain).second) values.push_back(std::move(plain));
                         });
  return values;
}

bool saySame(std::string_view identifier, std::string_view before, std::string_view after) {
  return before == after || valuesOf(identifier, before) == valuesOf(identifier, after);
}

/// The date that the tag tells, from the year to the second, as far as it goes.
std::string dateOf(const Tag& tag) {
  const auto valueOf = [&](std::string_view identifier) { return TagTexts::firstValue(tag, identifier); };
  if (std::string date = valueOf("TDRC"); !date.empty()) return date;
  std::string date = valueOf("TYER");
  const std::string day = valueOf("TDAT");
  const std::string time = valueOf("TIME");
  if (day.size() == 4) date.append("-").append(day, 2).append("-").append(day, 0, 2);
  if (time.size() == 4) date.append("T").append(time, 0, 2).append(":").append(time, 2);
  return date;
}

/// A year has four digits in one tag, and as many as it takes in another.
std::string_view withoutZerosInFront(std::string_view date) {
  while (date.size() > 1 && date[0] == '0' && platform::Text::isASCIIDigit(date[1])) date.remove_prefix(1);
  return date;
}

class Comparison {
 public:
  Comparison(const Tag& expected, const Tag& found) : expected_(expected), found_(found) {
    for (const Frame& frame : expected.frames) {
      if (isWholeByItself(frame) && isThere(frame)) continue;
      std::visit([&](const auto& content) { compare(frame, content); }, frame.content);
    }
    const std::string date = dateOf(expected);
    const std::string newDate = dateOf(found);
    const bool isKept =
        newDate.empty() ? date.empty() : withoutZerosInFront(newDate).starts_with(withoutZerosInFront(date));
    if (!isKept) tellText("date", date, newDate);
  }

  Losses losses() && {
    Losses losses{{}, std::move(changed_)};
    for (const auto& [one, many, names] : groups_) {
      std::string item = names.size() == 1 ? one : std::to_string(names.size()) + " " + many;
      if (!names.front().empty()) item += " (" + list(names) + ")";
      losses.dropped.push_back(std::move(item));
    }
    return losses;
  }

 private:
  /// Losses of one kind, which are told together.
  struct Group {
    std::string one;
    std::string many;
    std::vector<std::string> names;
  };

  static std::string list(const std::vector<std::string>& names) {
    constexpr std::size_t limit = 5;
    std::string text;
    for (std::size_t i = 0; i < names.size() && i <= limit; ++i) {
      // What describes a picture has commas of its own.
      if (i > 0) text += names[i].starts_with('"') ? ", " : "; ";
      text += i < limit ? names[i] : "…";
    }
    return text;
  }

  void drop(const std::string& one, const std::string& many, std::string name) {
    auto group = std::ranges::find(groups_, one, &Group::one);
    if (group == groups_.end()) group = groups_.insert(group, {one, many, {}});
    group->names.push_back(std::move(name));
  }

  void tellText(std::string_view what, std::string_view before, std::string_view after) {
    const std::string told = std::string(what) + " " + inQuotes(before);
    if (TagTexts::isBlank(after)) {
      drop("the " + told, "", "");
    } else {
      changed_.push_back(told + " becomes " + inQuotes(after));
    }
  }

  /// Whether an equal frame says the same in whatever form it is.
  static bool isWholeByItself(const Frame& frame) {
    return !std::holds_alternative<ID3v2::Chapter>(frame.content) &&
           !std::holds_alternative<ID3v2::TableOfContents>(frame.content);
  }

  /// Whether the frame is there as it is, as most are, and mostly behind the one that was there before.
  bool isThere(const Frame& frame) {
    const std::vector<Frame>& frames = found_.frames;
    auto at = frames.begin() + static_cast<std::ptrdiff_t>(behindLast_);
    if (at == frames.end() || *at != frame) at = std::ranges::find(frames, frame);
    if (at == frames.end()) return false;
    behindLast_ = static_cast<std::size_t>(at - frames.begin()) + 1;
    return true;
  }

  template <class Content, class Predicate>
  const Content* findContent(const Frame& like, Predicate isSame) const {
    for (const Frame& frame : found_.frames) {
      const auto* content =
          frame.identifier == like.identifier ? std::get_if<Content>(&frame.content) : nullptr;
      if (content != nullptr && isSame(*content)) return content;
    }
    return nullptr;
  }

  /// Such a frame is written as it was, or listed with the parts that cannot be read.
  void compare(const Frame&, const ID3v2::Unread&) {}

  /// A frame without content says nothing.
  void compare(const Frame& frame, const ID3v2::Opaque& opaque) {
    const auto isSame = [&](const ID3v2::Opaque& other) { return other == opaque; };
    if (!opaque.bytes.empty() && findContent<ID3v2::Opaque>(frame, isSame) == nullptr) dropFrame(frame);
  }

  /// Text frames of one identifier count together: several of them are several values.
  void compare(const Frame& frame, const ID3v2::Text&) {
    const std::string& identifier = frame.identifier;
    if (FieldFrames::isOfTheDate(identifier) || !comparedTexts_.insert(identifier).second) return;
    const std::string before = TagTexts::textOf(expected_, identifier);
    const std::string after = TagTexts::textOf(found_, identifier);
    if (!saySame(identifier, before, after) && !TagTexts::isBlank(before))
      tellText(TagDescriptions::nameOf(identifier), before, after);
  }

  void compare(const Frame& frame, const UserText& text) {
    const auto isSame = [&](const UserText& other) {
      return other.description == text.description && saySame("TXXX", text.text, other.text);
    };
    if (findContent<UserText>(frame, isSame) == nullptr)
      drop("a user text", "user texts", inQuotes(text.description));
  }

  void compare(const Frame& frame, const LanguageText& text) {
    if (TagTexts::isBlank(text.text)) return;
    const bool isComment = frame.identifier == "COMM";
    const auto isSame = [&](const LanguageText& other) { return saySame("", text.text, other.text); };
    const auto isSameWithDescription = [&](const LanguageText& other) {
      return isSame(other) && other.description == text.description;
    };
    if (findContent<LanguageText>(frame, isSameWithDescription) != nullptr) return;
    const std::string description = inQuotes(text.description);
    if (findContent<LanguageText>(frame, isSame) != nullptr) {
      if (!TagTexts::isBlank(text.description))
        drop("the description " + description + (isComment ? " of a comment" : " of the lyrics"), "", "");
    } else {
      drop(isComment ? "a comment" : "lyrics", isComment ? "comments" : "lyrics",
           text.description.empty() ? inQuotes(text.text) : description);
    }
  }

  void compare(const Frame& frame, const Picture& picture) {
    const std::string described = TagDescriptions::describe(picture);
    const auto isSame = [&](const Picture& other) { return other.data == picture.data; };
    const auto isSameInAll = [&](const Picture& other) {
      return isSame(other) && other.type == picture.type && other.description == picture.description;
    };
    if (findContent<Picture>(frame, isSameInAll) != nullptr) return;
    const auto* same = findContent<Picture>(frame, isSame);
    if (same == nullptr) return drop("a picture", "pictures", described);
    if (same->type != picture.type) {
      changed_.push_back("a picture (" + described + ") becomes the " +
                         std::string(TagDescriptions::pictureType(same->type)));
    }
    if (!TagTexts::isBlank(picture.description) && same->description != picture.description) {
      drop("the description " + inQuotes(picture.description) + " of a picture", "", "");
    }
  }

  /// A chapter with its frames inside, which v2.4 measures otherwise than v2.3: moved as it is from the one
  /// to the other, they are lost to most readers.
  template <class Parent>
  void compareParent(const Frame& frame, const Parent& parent) {
    const auto isSame = [&](const Parent& other) {
      const auto isInForm = [](const Frame& inner) { return !inner.original.empty(); };
      return other == parent && (expected_.version == 3 || std::ranges::all_of(other.frames, isInForm));
    };
    if (findContent<Parent>(frame, isSame) == nullptr) dropFrame(frame);
  }
  void compare(const Frame& frame, const ID3v2::Chapter& chapter) { compareParent(frame, chapter); }
  void compare(const Frame& frame, const ID3v2::TableOfContents& table) { compareParent(frame, table); }

  void compare(const Frame& frame, const ID3v2::URL& url) {
    const auto isSame = [&](const ID3v2::URL& other) { return other == url; };
    if (findContent<ID3v2::URL>(frame, isSame) == nullptr) dropFrame(frame);
  }
  void dropFrame(const Frame& frame) {
    drop("a " + frame.identifier + " frame", frame.identifier + " frames", "");
  }

  const Tag& expected_;
  const Tag& found_;
  std::size_t behindLast_ = 0;
  std::set<std::string> comparedTexts_;
  std::vector<Group> groups_;
  std::vector<std::string> changed_;
};

void addTo(std::string& text, std::string_view joint, std::string_view more) {
  if (!text.empty()) text += joint;
  text += more;
}

std::string joined(const std::vector<std::string>& items) {
  std::string text;
  for (const std::string& item : items) addTo(text, ", ", item);
  return text;
}

/// What described a comment or a picture goes with it when another one is asked for: that one alone.
void forgetOldDescriptions(Tag& tag, const TagSet& wanted, TagFields asked) {
  TagFields rest = asked;
  const auto forget = [&](TagField field, bool isNew, std::string& description) {
    if (!isNew || !rest.contains(field)) return;
    description.clear();
    rest = rest.without({field});
  };
  for (Frame& frame : tag.frames) {
    if (auto* picture = std::get_if<Picture>(&frame.content)) {
      forget(TagField::artwork, wanted.artwork && picture->data == wanted.artwork->data,
             picture->description);
    } else if (auto* text = std::get_if<LanguageText>(&frame.content)) {
      const bool isComment = frame.identifier == "COMM";
      forget(isComment ? TagField::comment : TagField::lyrics,
             text->text == (isComment ? wanted.comment : wanted.lyrics), text->description);
    }
  }
}

}  // namespace

Losses between(const Tag& expected, const Tag& found) {
  return Comparison(expected, found).losses();
}

std::string ofWriting(FileTags old, const TagSet& wanted, TagFields asked,
                      const platform::SharedBytes& newTag) {
  LosslessConversion::setFields(old.tag, wanted, asked);
  forgetOldDescriptions(old.tag, wanted, asked);
  const auto found = ID3v2::read(newTag).value_or(ID3v2::Reading());
  Losses losses = between(old.tag, found.tag);
  std::string sentence;
  const auto add = [&](const std::string& clause) { addTo(sentence, "; ", clause); };
  if (!old.hasID3v2Tag) {
    if (!losses.dropped.empty()) add("hides its ID3v1 tag (" + joined(losses.dropped) + ")");
    if (old.hasAPETag) add("hides its APE tag");
  } else {
    for (const ID3v2::UnreadablePart& part : old.unreadable) {
      if (std::ranges::count(found.unreadable, part) == 0) losses.dropped.push_back(part.what);
    }
    if (!losses.dropped.empty()) add("drops " + joined(losses.dropped));
  }
  for (const std::string& clause : losses.changed) add(clause);
  if (sentence.empty()) return sentence;
  const bool canBeKept = old.isWritable() && !old.hasAPETag;
  return sentence + (canBeKept ? ". --lossless keeps them." : ".");
}

std::string ofReading(const FileTags& tags, const TagSet& read, TagFields selected) {
  const Tag& tag = tags.tag;
  const TagSet held = LosslessConversion::fieldsOf(tag);
  std::string sentence;
  bool canBeCarried = true;
  for (const TagField field : allTagFields) {
    if (!selected.contains(field)) continue;
    std::optional<std::string> said = held.value(field);
    const std::string now = read.value(field).value_or("");
    if (said) {
      const bool isSame = field == TagField::artwork ? held.artwork == read.artwork
                                                     : saySame(FieldFrames::identifierOf(field), *said, now);
      if (isSame) continue;
      said = stringKeyPath(field) != nullptr ? inQuotes(*said)
             : field == TagField::artwork    ? "(" + *said + ")"
                                             : *said;
    } else {
      said = LosslessConversion::uncarried(tag, held, field);
      if (!said) continue;
      canBeCarried = false;
    }
    const bool isYear = field == TagField::year;
    const std::string what = isYear ? "date " + dateOf(tag) : TagDescriptions::nameOf(field) + " " + *said;
    addTo(sentence, ", ", "its " + what + (now.empty() ? " is not read" : " is read"));
    if (isYear) sentence += now.empty() ? " as a year" : " as the year " + now;
    if (!isYear && !now.empty()) sentence += " as " + inQuotes(now);
  }
  if (const std::string unreadable = tags.unreadableFor(selected); !unreadable.empty()) {
    addTo(sentence, ", ", unreadable + " is not read");
    canBeCarried = false;
  }
  if (sentence.empty()) return sentence;
  return sentence + (canBeCarried ? ". --lossless carries them." : ".");
}

}  // namespace QuillmarkKit::TagLosses
