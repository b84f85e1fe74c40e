#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ID3v2/Tag.h"
#include "QuillmarkKit/model/TagSet.h"

/// What the texts of frames say: lists of values, genres, years, positions.
namespace QuillmarkKit::TagTexts {

/// Whether there is nothing but white space and U+0000.
bool isBlank(std::string_view text);

/// Calls the operation with each value of the text; U+0000 stands between them.
void forEachValue(std::string_view text, const std::function<void(std::string_view)>& operation);
void addValue(std::string& text, std::string_view value);

/// Returns the text of these text frames, whose values count together.
std::string joined(const std::vector<const ID3v2::Text*>& frames);
/// The text of the tag's text frames of that identifier. There should be one; what others add stands behind
/// it.
std::string textOf(const ID3v2::Tag& tag, std::string_view identifier);
/// The first value of that text that is not blank, without blanks at its ends.
std::string firstValue(const ID3v2::Tag& tag, std::string_view identifier);

/// The genres that a genre text (TCON) names, numbers as names (ID3v2.3.0 §4.2.1, ID3v2.4.0 frames §4.2.3).
std::string genresIn(std::string_view text);
/// The genre text that names these genres, as ID3v2.3 has it.
std::string genreText(std::string_view genres);

/// The year of a date: that of seconds since 1970 where it has nine or ten digits, as the engine's v2.4 tags
/// do, else the first four digits of its first run of four or more.
std::optional<std::int64_t> yearIn(std::string_view date);
/// The year with four digits where these are enough.
std::string yearText(std::int64_t year);

/// A track or disc text (ID3v2.3.0 §4.2.1): what stands before and behind the slash, without blanks.
struct Position {
  std::string number;
  std::string total;

  std::string& part(bool isTotal) { return isTotal ? total : number; }
  std::string text() const { return total.empty() ? number : number + "/" + total; }
};
Position positionIn(std::string_view text);

/// Returns the date in the tag, from the year to the second, as far as it goes; empty if there is none.
std::string dateIn(const ID3v2::Tag& tag);

}  // namespace QuillmarkKit::TagTexts
