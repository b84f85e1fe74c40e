#pragma once

#include <cstdint>

#include "QuillmarkKit/model/TagSet.h"
#include "platform/base/JSON.h"

namespace QuillmarkKit {

/// The form of a picture in JSON: its bytes in base64 as "data", or their number as "bytes". Both forms have
/// the member "format".
enum class ArtworkForm : std::uint8_t { data, size };

/// Returns an object with a member for each field that has a value, named by the field's raw value. Texts are
/// strings, numbers are integers, and the artwork is an object.
platform::JSON::Value encodeTagSet(const TagSet& tags, ArtworkForm form = ArtworkForm::data);

/// Returns the tag set in such an object. Ignores nulls and members that are not fields. Does not normalise
/// texts. Throws platform::JSON::DecodingError if a value is not of its field's kind; the message contains
/// the path of the member, which starts with `path`.
TagSet decodeTagSet(const platform::JSON::Value& value, const std::string& path);

}  // namespace QuillmarkKit
