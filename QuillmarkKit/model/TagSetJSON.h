#pragma once

#include <cstdint>

#include "QuillmarkKit/model/TagSet.h"
#include "platform/base/JSON.h"

namespace QuillmarkKit {

/// What a picture is in JSON beside its "format": its bytes in base64 as "data", or their number as "bytes".
enum class ArtworkForm : std::uint8_t { data, size };

/// An object with a member for each field that has a value, named by the field's raw value: texts as strings,
/// numbers as integers, the artwork as an object.
platform::JSON::Value encodeTagSet(const TagSet& tags, ArtworkForm form = ArtworkForm::data);

/// The tag set that such an object holds; missing members, nulls and members of other names are no values.
/// Texts come back as they stand. Throws platform::JSON::DecodingError, which names the member by its path
/// behind `path`, when any value is not of its field's kind.
TagSet decodeTagSet(const platform::JSON::Value& value, const std::string& path);

}  // namespace QuillmarkKit
