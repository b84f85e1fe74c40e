#include "quillmark/ArtworkFile.h"

#include <filesystem>

#include "platform/FileError.h"
#include "platform/FileOutput.h"
#include "platform/Paths.h"
#include "platform/Signals.h"
#include "platform/base/Strings.h"
#include "quillmark/CLIError.h"

namespace quillmark {

void saveArtwork(const FileList& files, std::string_view to, const QuillmarkKit::TagStore& store,
                 Console& console) {
  if (files.size() != 1) throw CLIError("--save-artwork takes one MP3.");
  const bool isStandardOutput = to == "-";
  if (isStandardOutput && console.outputIsTerminal()) {
    throw CLIError("--save-artwork does not write a picture to a terminal. Name a file instead of -.");
  }
  const std::filesystem::path target = platform::fileLocation(to);
  // Otherwise, "--save-artwork *.mp3" would replace the first MP3.
  if (platform::Strings::equalIgnoringASCIICase(target.extension().native(), ".mp3")) {
    throw CLIError("--save-artwork does not replace an MP3 with a picture: " + std::string(to) + ".");
  }
  const std::filesystem::path source = files.location(0);
  const auto artwork = store.read(source).artwork;
  if (!artwork) throw CLIError(platform::lastPathComponent(source) + " has no artwork.");
  if (isStandardOutput) {
    console.write(platform::charactersOf(artwork->data));
    return;
  }
  // A signal must not leave an unfinished file.
  platform::Signals::noteInterruptions();
  platform::replaceContents(target, artwork->data);
}

}  // namespace quillmark
