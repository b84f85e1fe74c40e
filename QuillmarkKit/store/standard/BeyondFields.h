#pragma once

#include <string>

#include "ID3v2/Tag.h"

namespace QuillmarkKit {

/// Returns the contents of the tag that belong to no field, as an enumeration such as "2 TXXX, POPM, a
/// picture (back cover), the day and month of its date"; empty if there are none.
std::string beyondFields(const ID3v2::Tag& tag);

}  // namespace QuillmarkKit
