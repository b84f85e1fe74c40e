#include "quillmark/CLIError.h"

#include "quillmark/ToolName.h"

namespace quillmark {

CLIError CLIError::unknownField(std::string_view name) {
  return CLIError("Unknown field '" + std::string(name) + "'. Run '" + std::string(toolName) +
                  " fields' for the list.");
}

CLIError CLIError::unreadableArtwork(std::string_view path) {
  return CLIError("Could not read artwork at " + std::string(path) + " (expected a JPEG or PNG).");
}

CLIError CLIError::noFiles() {
  return CLIError("No files given.");
}

}  // namespace quillmark
