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
  /// Names for people where the values come from, if fields that it does not have are removed from files.
  std::string source = {};
  /// If files get different values: what each of them gets, in the place of `tags` and `selection`.
  std::vector<QuillmarkKit::FileChange> changes = {};
};

/// Applies the fields to one file after another, reports each, and returns the exit status. After an
/// interruption, completes the current file and reports how many files were not reached.
int writeInto(const WriteRun& run, Console& console);

}  // namespace quillmark
