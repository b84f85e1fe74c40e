#pragma once

#include "QuillmarkKit/transfer/TagApplier.h"
#include "platform/StandardStreams.h"
#include "quillmark/Arguments.h"

namespace quillmark {

/// What paste, apply and set have in common: applies the selected fields of `tags` to one file after another,
/// reports each, and gives the exit status. When the process is to be interrupted, the file in hand is the
/// last one.
int writeInto(Words paths, const QuillmarkKit::TagApplier& applier, const QuillmarkKit::TagSet& tags,
              QuillmarkKit::TagFields selection, bool dryRun, platform::StandardOutput& output);

}  // namespace quillmark
