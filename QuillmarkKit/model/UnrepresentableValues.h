#pragma once

#include <map>
#include <string>

#include "QuillmarkKit/model/TagField.h"

namespace QuillmarkKit {

/// Descriptions of values in a tag that their fields cannot represent, for messages, such as "127.98" in
/// quotes for the BPM. These fields are absent in the tag set.
using UnrepresentableValues = std::map<TagField, std::string>;

}  // namespace QuillmarkKit
