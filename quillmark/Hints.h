#pragma once

#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "platform/FileError.h"
#include "platform/base/Bytes.h"
#include "quillmark/Arguments.h"
#include "quillmark/FileList.h"

// Guesses at the meaning of unknown words.
namespace quillmark {

/// Returns the name that `typed` was probably meant to be: the same but for case and hyphens, the one that
/// other programs call so, one that starts with it, or one that differs in at most two letters. The order of
/// `names` decides between equal candidates.
std::optional<std::string_view> nearestName(std::string_view typed, std::span<const std::string_view> names);

/// Returns a sentence such as "did you mean artwork?" if the word resembles a field's name, else nothing.
std::string fieldHint(std::string_view typed);

/// Returns a sentence about a word that starts with two hyphens and is not an option of the command, with the
/// option that was probably meant. `name` is the word without its hyphens; `consequence` follows the
/// statement.
std::string unknownOption(const CommandOptions& command, std::string_view name,
                          std::string_view consequence = "");

/// Returns a sentence about a location that is a folder, where a file is expected; nothing for another one.
std::string folderHint(const std::filesystem::path& file);
/// Returns the operation's result. If it throws a FileError because the file is a folder, throws a CLIError
/// with the same description and the folder's hint instead.
template <class Operation>
auto hintingAtFolder(const std::filesystem::path& file, Operation operation) {
  try {
    return operation();
  } catch (const platform::FileError& error) {
    std::string hint = folderHint(file);
    if (hint.empty()) throw;
    throw CLIError(error.what(), std::move(hint));
  }
}

/// Returns the end of a sentence about a file that is neither JPEG nor PNG: its format, if it is a known one.
std::string pictureHint(platform::ByteView bytes);

/// Returns how a number field's value such as "3/12" is to be written; nothing for another value.
std::string numberHint(QuillmarkKit::TagField field, std::string_view value);

// The checks of --strict, which end a run before it writes anything.

/// Throws CLIError for an option that the command does not have, and for a word that starts like an option
/// but names no file.
void requireKnownWords(const Arguments& arguments, const CommandOptions& command);

/// Throws what `read` would throw if one of the files is missing or is not an MP3: CLIError with a hint for a
/// folder.
void requireMP3Files(const FileList& files);

}  // namespace quillmark
