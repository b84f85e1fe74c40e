#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/base/JSON.h"

// Functions that return the value of the kind that is expected at a place in a document. They throw
// platform::JSON::DecodingError if the value is of another kind or the member is missing. `path` names the
// place in the message.
namespace QuillmarkKit {

const platform::JSON::Object& requireObject(const platform::JSON::Value& value, std::string_view path);
const platform::JSON::Value& requireMember(const platform::JSON::Object& object, std::string_view path,
                                           std::string_view name);
const std::string& decodeText(const platform::JSON::Value& value, std::string_view path);
/// Returns a whole number of at most 64 bits, in whatever notation: 1977, 1977.0 or 1.977e3.
std::int64_t decodeNumber(const platform::JSON::Value& value, std::string_view path);

}  // namespace QuillmarkKit
