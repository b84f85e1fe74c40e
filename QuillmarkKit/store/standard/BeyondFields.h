#pragma once

#include <string>

#include "ID3v2/Tag.h"

namespace QuillmarkKit {

/// Returns what the tag contains that no field holds, as an enumeration such as "2 TXXX, POPM, a picture
/// (back cover), the day and month of its date"; empty if nothing.
std::string beyondFields(const ID3v2::Tag& tag);

}  // namespace QuillmarkKit
