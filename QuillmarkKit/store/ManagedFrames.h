#pragma once

#include <span>
#include <string_view>

namespace QuillmarkKit::ID3Frames {

/// The identifiers of the frames that a tag set holds, in ascending order: those that stand with the fields
/// in the table that converts them.
std::span<const std::string_view> managed();

}  // namespace QuillmarkKit::ID3Frames
