#pragma once

#include <string_view>

namespace QuillmarkKit::QuillmarkNotification {

/// The name of the notification that programs can post after they have changed the tags of files. This
/// library does not post it.
inline constexpr std::string_view filesChanged = "org.quillmark.filesChanged";

}  // namespace QuillmarkKit::QuillmarkNotification
