#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/base/JSON.h"

// What a JSON value must be at a place in a document. All throw platform::JSON::DecodingError when it is not;
// `path` names the place.
namespace QuillmarkKit {

const platform::JSON::Object& requireObject(const platform::JSON::Value& value, std::string_view path);
const platform::JSON::Value& requireMember(const platform::JSON::Object& object, std::string_view path,
                                           std::string_view name);
const std::string& decodeText(const platform::JSON::Value& value, std::string_view path);
/// A whole number that fits in 64 bits, however it is written.
std::int64_t decodeNumber(const platform::JSON::Value& value, std::string_view path);

}  // namespace QuillmarkKit
