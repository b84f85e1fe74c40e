#pragma once

#include <string>
#include <string_view>

/// Text frames in a form that is the same for all ways to write a value: 03/12 and 3/12, "R&B" and "R And B",
/// spaces and line breaks at the end.
namespace QuillmarkKit::PlainValues {

/// Returns the values of a text frame in that form, each once, with U+0000 between them.
std::string plainText(std::string_view identifier, std::string_view text);

/// Returns whether two texts of frames with that identifier have the same values.
bool saySame(std::string_view identifier, std::string_view before, std::string_view after);

}  // namespace QuillmarkKit::PlainValues
