#include "quillmark/StrictChecks.h"

#include "QuillmarkKit/store/MP3TagStore.h"
#include "platform/FileManager.h"
#include "platform/Paths.h"
#include "platform/base/Strings.h"
#include "quillmark/CLIError.h"
#include "quillmark/Hints.h"

namespace quillmark {

namespace {

/// Returns whether the word starts with a hyphen, or with a dash that an editor has made of one.
bool startsLikeAnOption(std::string_view word) {
  constexpr char32_t firstDash = 0x2010;
  constexpr char32_t lastDash = 0x2015;
  constexpr char32_t minus = 0x2212;
  if (word.empty() || !platform::Strings::isValidUTF8(word)) return false;
  const char32_t first = platform::Strings::firstCharacter(word).value;
  return first == '-' || (first >= firstDash && first <= lastDash) || first == minus;
}

}  // namespace

void requireKnownWords(const Arguments& arguments, const CommandOptions& command) {
  for (const std::string_view name : arguments.unknown) {
    throw CLIError(unknownOption(command, name) + optionHint(command, name));
  }
  for (const std::string_view word : arguments.positional) {
    if (!startsLikeAnOption(word) || platform::FileManager::exists(platform::fileLocation(word))) continue;
    throw CLIError(std::string(word) + " is neither an option nor the name of a file.");
  }
}

void requireMP3Files(const FileList& files) {
  for (std::size_t i = 0; i < files.size(); ++i) {
    const std::filesystem::path file = files.location(i);
    hintingAtFolder(file, [&] { QuillmarkKit::MP3TagStore::requireMP3(file); });
  }
}

}  // namespace quillmark
