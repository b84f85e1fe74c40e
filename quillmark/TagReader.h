#pragma once

#include <filesystem>
#include <memory>
#include <optional>

#include "QuillmarkKit/model/TagSet.h"
#include "QuillmarkKit/store/MP3TagStore.h"
#include "quillmark/Arguments.h"
#include "quillmark/Console.h"
#include "quillmark/Progress.h"

namespace quillmark {

/// Reads the tags of one file after another, as the options of `read` ask for them, and prints notes about
/// them.
class TagReader {
 public:
  TagReader(const Arguments& arguments, std::size_t fileCount, Console& console);

  bool keepsGoing() const { return keepsGoing_; }
  /// Returns whether only some fields are read.
  bool isLimited() const { return fields_ != QuillmarkKit::TagFields::all; }
  /// Returns the exit status for the files read so far.
  int status() const { return status_; }

  /// Returns the selected fields of the file's tags. If the file cannot be read, throws, or with --keep-going
  /// prints the error and returns nothing.
  std::optional<QuillmarkKit::TagSet> tagsOf(const std::filesystem::path& file);

 private:
  QuillmarkKit::TagSet read(const std::filesystem::path& file);
  QuillmarkKit::TagSet readWithNotes(const std::filesystem::path& file);

  bool keepsGoing_;
  bool joinsValues_;
  bool printsNotes_;
  QuillmarkKit::TagFields fields_ = QuillmarkKit::TagFields::all;
  std::unique_ptr<const QuillmarkKit::MP3TagStore> store_;
  Console& console_;
  Progress progress_;
  int status_ = 0;
  /// Whether the hint for folders was printed, which is printed once.
  bool hasNotedFolder_ = false;
};

}  // namespace quillmark
