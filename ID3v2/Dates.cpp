#include "ID3v2/Dates.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "platform/Text.h"

namespace ID3v2 {

namespace {

constexpr std::string_view dateIdentifier = "TDRC";
constexpr std::array<std::string_view, 3> oldIdentifiers{"TYER", "TDAT", "TIME"};

/// Takes a date apart from its front.
class DateText {
 public:
  explicit DateText(std::string_view text) : rest_(text) {}

  /// So many digits behind one of the separators; empty for anything else and for a number outside the range,
  /// behind which nothing is to be taken.
  std::string_view take(std::string_view separators, std::size_t digits, int least, int most) {
    std::string_view number = rest_;
    if (!separators.empty()) {
      if (number.empty() || separators.find(number.front()) == std::string_view::npos) return {};
      number.remove_prefix(1);
    }
    if (number.size() < digits ||
        !std::ranges::all_of(number.substr(0, digits), platform::Text::isASCIIDigit))
      return {};
    rest_ = number.substr(digits);
    number = number.substr(0, digits);
    int value = 0;
    for (const char digit : number) value = 10 * value + (digit - '0');
    return value >= least && value <= most ? number : std::string_view();
  }
  bool isDone() const { return rest_.empty(); }

 private:
  std::string_view rest_;
};

/// The texts of TYER, TDAT and TIME for a date, empty where there is none, and whether they say all of it.
struct OldDate {
  std::array<std::string, 3> texts;
  bool isComplete = false;
};

OldDate oldDate(std::string_view text) {
  OldDate old;
  if (areSecondsSince1970(std::min(text.find_first_not_of("0123456789"), text.size()))) return old;
  DateText date(text);
  const std::string_view year = date.take("", 4, 0, 9999);
  if (year.empty()) return old;
  old.texts[0] = year;
  old.isComplete = date.isDone();
  const std::string_view month = date.take("-", 2, 1, 12);
  const std::string_view day = month.empty() ? month : date.take("-", 2, 1, 31);
  if (day.empty()) return old;
  old.texts[1] = std::string(day) + std::string(month);
  old.isComplete = date.isDone();
  const std::string_view hour = date.take("T ", 2, 0, 23);
  const std::string_view minute = hour.empty() ? hour : date.take(":", 2, 0, 59);
  if (minute.empty()) return old;
  old.texts[2] = std::string(hour) + std::string(minute);
  // TIME is read as a full minute, which is more than a date without seconds says.
  old.isComplete = false;
  return old;
}

}  // namespace

std::vector<Frame> withDatesOfV23(const std::vector<Frame>& frames) {
  const auto hasOldIdentifier = [](const Frame& frame) {
    return std::ranges::find(oldIdentifiers, frame.identifier) != oldIdentifiers.end();
  };
  const auto date = std::ranges::find(frames, dateIdentifier, &Frame::identifier);
  if (date == frames.end() || !date->original.empty() || std::ranges::any_of(frames, hasOldIdentifier) ||
      std::ranges::count(frames, dateIdentifier, &Frame::identifier) > 1) {
    return frames;
  }
  const auto* text = std::get_if<Text>(&date->content);
  if (text == nullptr) return frames;
  const OldDate old = oldDate(text->text);
  std::vector<Frame> converted(frames.begin(), date);
  for (std::size_t i = 0; i < old.texts.size(); ++i) {
    if (old.texts[i].empty()) continue;
    Frame& frame = converted.emplace_back(*date);
    frame.identifier = oldIdentifiers[i];
    frame.content = Text{old.texts[i]};
  }
  if (!old.isComplete) converted.push_back(*date);
  converted.insert(converted.end(), date + 1, frames.end());
  return converted;
}

}  // namespace ID3v2
