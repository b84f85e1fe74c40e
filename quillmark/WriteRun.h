#pragma once

#include <memory>
#include <string>
#include <vector>

#include "QuillmarkKit/model/TagSet.h"
#include "QuillmarkKit/store/TagStore.h"
#include "QuillmarkKit/transfer/TagDocument.h"
#include "quillmark/Console.h"
#include "quillmark/FileList.h"
#include "quillmark/RunOptions.h"

namespace quillmark {

/// A run of paste, apply or set: fields of one tag set to be written into files. The command line has been
/// checked.
struct WriteRun {
  FileList files;
  std::unique_ptr<const QuillmarkKit::TagStore> store;
  QuillmarkKit::TagSet tags;
  QuillmarkKit::TagFields selection;
  RunOptions options;
  /// Names the origin of the values in a note about fields that are removed because it does not have them;
  /// empty if no note is needed.
  std::string source = {};
  /// The change of each file, instead of `tags` and `selection`; empty if all files get the same values.
  std::vector<QuillmarkKit::FileChange> changes = {};
};

/// Applies the fields to one file after another, reports each, and returns the exit status. After an
/// interruption, completes the current file and reports how many files were not reached.
int writeInto(const WriteRun& run, Console& console);

}  // namespace quillmark
