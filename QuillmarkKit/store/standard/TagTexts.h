#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ID3v2/Tag.h"
#include "QuillmarkKit/model/TagSet.h"

/// Interprets the texts of frames: lists of values, genres, years, positions.
namespace QuillmarkKit::TagTexts {

/// Returns whether the text contains only white space and U+0000.
bool isBlank(std::string_view text);

/// Calls the operation with each value of the text. Values are separated by U+0000.
void forEachValue(std::string_view text, const std::function<void(std::string_view)>& operation);
void addValue(std::string& text, std::string_view value);

/// Returns the text of the first of these frames that is not empty, followed by the values that it does not
/// have and later frames do.
std::string joined(const std::vector<const ID3v2::Text*>& frames);
/// Returns the joined text of the tag's text frames with this identifier. There should be only one.
std::string textOf(const ID3v2::Tag& tag, std::string_view identifier);
/// Returns the first value of that text that is not blank, trimmed; empty if there is none.
std::string firstValue(const ID3v2::Tag& tag, std::string_view identifier);

/// Returns the genres in a genre text (TCON), with names in place of numbers (ID3v2.3.0 §4.2.1, ID3v2.4.0
/// frames §4.2.3).
std::string genresIn(std::string_view text);
/// Returns the genre text of these genres in the form of ID3v2.3.
std::string genreText(std::string_view genres);

/// Returns the year of a date, or nothing if it has none. Nine or ten digits are seconds since 1970, as in
/// v2.4 tags by the engine. In other dates, the year is the first four digits of the first run of four or
/// more.
std::optional<std::int64_t> yearIn(std::string_view date);
/// Returns the year, padded with zeros to four digits.
std::string yearText(std::int64_t year);

/// The texts before and after the slash of a track or disc text (ID3v2.3.0 §4.2.1), trimmed.
struct Position {
  std::string number;
  std::string total;

  std::string& part(bool isTotal) { return isTotal ? total : number; }
  std::string text() const { return total.empty() ? number : number + "/" + total; }
};
Position positionIn(std::string_view text);

/// Returns the date in the tag, from the year to the second, as precise as the tag has it; empty if there is
/// none.
std::string dateIn(const ID3v2::Tag& tag);

}  // namespace QuillmarkKit::TagTexts

/// Converts values to a form in which all spellings of a value are equal: 03/12 and 3/12, "R&B" and "R And
/// B", spaces and line breaks at the end, languages in capitals.
namespace QuillmarkKit::PlainValues {

/// Returns the values of a text frame in that form, each once, separated by U+0000.
std::string plainText(std::string_view identifier, std::string_view text);

/// Returns the code of a language (ISO 639-2) in lower case, or an empty text if it is the code for an
/// unknown language.
std::string plainLanguage(std::string_view language);

/// Returns whether two texts of frames with this identifier have the same values in that form.
bool haveSameValues(std::string_view identifier, std::string_view before, std::string_view after);

}  // namespace QuillmarkKit::PlainValues
