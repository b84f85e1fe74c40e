#pragma once

#include <string_view>

namespace QuillmarkKit::QuillmarkNotification {

/// The name under which programs may announce that they changed the tags of files. Nothing here posts it.
inline constexpr std::string_view filesChanged = "org.quillmark.filesChanged";

}  // namespace QuillmarkKit::QuillmarkNotification
