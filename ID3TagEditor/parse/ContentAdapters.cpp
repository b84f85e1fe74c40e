#include "ID3TagEditor/parse/ContentAdapters.h"

#include "platform/base/Strings.h"

namespace ID3TagEditor {

namespace Strings = platform::Strings;

namespace {

/// Returns the first sequence of "(", word characters and ")", parentheses included. Returns an empty text if
/// there is none.
std::string_view firstParenthesisedWord(std::string_view text) {
  std::size_t open = text.find('(');
  while (open != std::string_view::npos) {
    std::size_t at = open + 1;
    while (at < text.size()) {
      const Strings::Character next = Strings::firstCharacter(text.substr(at));
      if (!Strings::isWordCharacter(next.value)) break;
      at += next.length;
    }
    if (at < text.size() && text[at] == ')') return text.substr(open, at + 1 - open);
    open = text.find('(', at);
  }
  return {};
}

std::optional<ID3Genre> genreNamed(std::string_view word) {
  if (const OptionalInteger number = Strings::decimalInteger(word)) {
    if (const auto genre = genreFromRawValue(*number)) return genre;
  }
  if (word == "RX") return ID3Genre::remix;
  if (word == "CR") return ID3Genre::cover;
  return std::nullopt;
}

}  // namespace

ID3FrameGenre ID3GenreStringAdapter::adapt(std::string_view genre) const {
  const std::string_view match = firstParenthesisedWord(genre);
  if (match.empty()) return {std::nullopt, std::string(genre)};
  const auto behindMatch = static_cast<std::size_t>(match.data() + match.size() - genre.data());
  std::string description(genre.substr(behindMatch));
  const std::optional<ID3Genre> identifier = genreNamed(match.substr(1, match.size() - 2));
  if (!identifier) description += match;
  if (description.empty()) return {identifier, std::nullopt};
  return {identifier, std::move(description)};
}

ID3FramePartOfTotal ID3PartOfTotalStringAdapter::adapt(std::string_view partOfTotal) const {
  const std::size_t slash = partOfTotal.find('/');
  const OptionalInteger part = Strings::decimalInteger(partOfTotal.substr(0, slash));
  OptionalInteger total;
  if (slash != std::string_view::npos) {
    const std::string_view rest = partOfTotal.substr(slash + 1);
    total = Strings::decimalInteger(rest.substr(0, rest.find('/')));
  }
  return {part.value_or(0), total};
}

std::pair<OptionalInteger, OptionalInteger> ID3CoupleOfNumbersAdapter::adapt(
    std::string_view coupleOfNumbers) const {
  const std::size_t half = Strings::characterCount(coupleOfNumbers) / 2;
  // From here on, counting bytes is enough: a half that contains a longer character is not a number anyway.
  return {Strings::decimalInteger(coupleOfNumbers.substr(0, half)),
          Strings::decimalInteger(coupleOfNumbers.substr(coupleOfNumbers.size() - half))};
}

std::optional<ID3PictureType> ID3PictureTypeAdapter::adapt(platform::ByteView frame, ID3PictureFormat format,
                                                           ID3Version version) const {
  const std::size_t position =
      id3FrameConfiguration_.headerSizeFor(version) +
      id3AttachedPictureFrameConfiguration_.getPictureTypeBytePositionFor(format, version);
  if (position >= frame.size()) return std::nullopt;
  return pictureTypeFromRawValue(frame[position]).value_or(ID3PictureType::other);
}

}  // namespace ID3TagEditor
