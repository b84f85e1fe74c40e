#pragma once

#include <string>
#include <string_view>

/// Text frames in a form that is the same for all ways to write a value: 03/12 and 3/12, "R&B" and "R And B",
/// spaces and line breaks at the end, languages in capitals.
namespace QuillmarkKit::PlainValues {

/// Returns the values of a text frame in that form, each once, with U+0000 between them.
std::string plainText(std::string_view identifier, std::string_view text);

/// Returns the code of a language (ISO 639-2) in lower case, or an empty text for a code of an unknown
/// language.
std::string plainLanguage(std::string_view language);

/// Returns whether two texts of frames with that identifier have the same values.
bool saySame(std::string_view identifier, std::string_view before, std::string_view after);

}  // namespace QuillmarkKit::PlainValues
