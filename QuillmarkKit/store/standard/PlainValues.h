#pragma once

#include <string>
#include <string_view>

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
