#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "QuillmarkKit/store/MP3TagStore.h"
#include "QuillmarkKit/store/TagStore.h"
#include "quillmark/Arguments.h"
#include "quillmark/Console.h"
#include "quillmark/FileList.h"

namespace quillmark {

/// A run of paste, apply or set: files, and the change that each of them gets. The command line has been
/// checked.
struct WriteRun {
  FileList files;
  std::unique_ptr<const QuillmarkKit::TagStore> store;
  /// The changes in the order of the files; a single one is for all files.
  std::vector<QuillmarkKit::TagChange> changes;
  /// Names the origin of the values in a note about fields that are removed because it does not have them;
  /// empty if no note is needed.
  std::string source = {};

  /// Returns the change of the file at this position.
  const QuillmarkKit::TagChange& changeOf(std::size_t index) const {
    return changes.size() == 1 ? changes.front() : changes[index];
  }
};

/// Makes the changes in one file after another, reports each, and returns the exit status. After an
/// interruption, completes the current file and reports how many files were not reached.
int writeInto(const WriteRun& run, const Arguments& arguments, Console& console);

/// Returns the store that the options choose.
std::unique_ptr<const QuillmarkKit::MP3TagStore> storeFor(const Arguments& arguments);

// The commands. An exception that they throw means status 1.

/// Prints the usage text and returns the exit status, as do the next four.
int commandHelp(Console& console);
int commandVersion(Console& console);
/// Lists the names of the fields.
int commandFields(Console& console);
/// Prints the tags of files.
int commandRead(const Arguments& arguments, Console& console);
/// Puts one file's tags on the clipboard.
int commandCopy(const Arguments& arguments, Console& console);

/// Returns the run that writes the tags on the clipboard.
WriteRun preparePaste(const Arguments& arguments, Console& console);
/// Returns the run that writes the tags of one file.
WriteRun prepareApply(const Arguments& arguments, Console& console);
/// Returns the run that writes the given values, or those in a document in the form of `read --json`.
WriteRun prepareSet(const Arguments& arguments, Console& console);

/// Returns a command's purpose, its options and one example, in lines that end in a line feed.
std::string helpText(const CommandOptions& command);

}  // namespace quillmark
