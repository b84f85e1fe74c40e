#include "quillmark/CLIError.h"

#include "platform/FileError.h"

namespace quillmark {

CLIError CLIError::unknownField(std::string_view name, std::string hint) {
  return CLIError(
      "Unknown field '" + std::string(name) + "'. Run '" + std::string(toolName) + " fields' for the list.",
      std::move(hint));
}

CLIError CLIError::unreadableArtwork(std::string_view path, std::string hint) {
  return CLIError("Could not read artwork at " + std::string(path) + " (expected a JPEG or PNG).",
                  std::move(hint));
}

CLIError CLIError::noFiles() {
  return CLIError("No files given.");
}

CLIError CLIError::sameMember(const std::filesystem::path& file) {
  return CLIError(platform::lastPathComponent(file) +
                  " and another file have one and the same name in JSON, as bytes that are not UTF-8 have no "
                  "place there. Read each in a run of its own, or rename one.");
}

CLIError CLIError::cannotCarry(QuillmarkKit::TagField field, const std::string& value) {
  return CLIError("The clipboard cannot carry the " + std::string(cliName(field)) + " " + value +
                  " of the copied file. Leave it out with --fields.");
}

}  // namespace quillmark
