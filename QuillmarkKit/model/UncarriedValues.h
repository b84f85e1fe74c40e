#pragma once

#include <map>
#include <string>

#include "QuillmarkKit/model/TagField.h"

namespace QuillmarkKit {

/// For fields that have no value in a tag set, the value that their tag holds, such as "127.98" in quotes.
using UncarriedValues = std::map<TagField, std::string>;

}  // namespace QuillmarkKit
