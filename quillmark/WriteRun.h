#pragma once

#include <memory>

#include "QuillmarkKit/model/TagSet.h"
#include "QuillmarkKit/store/TagStore.h"
#include "quillmark/Console.h"
#include "quillmark/FileList.h"
#include "quillmark/RunOptions.h"

namespace quillmark {

/// What paste, apply and set come to: fields of one tag set to be written into files. All that can be wrong
/// with a command line has been found when there is one.
struct WriteRun {
  FileList files;
  std::unique_ptr<const QuillmarkKit::TagStore> store;
  QuillmarkKit::TagSet tags;
  QuillmarkKit::TagFields selection;
  RunOptions options;
};

/// Applies the fields to one file after another, reports each, and gives the exit status. When an
/// interruption is noted, the file in hand is the last one.
int writeInto(const WriteRun& run, Console& console);

}  // namespace quillmark
