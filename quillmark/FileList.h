#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ReadAhead.h"
#include "platform/base/Bytes.h"
#include "quillmark/Arguments.h"

namespace quillmark {

/// The contents of a file that a word of the command line names; "-" names standard input.
struct NamedInput {
  /// Reads the input to its end. Throws FileError.
  explicit NamedInput(std::string_view word);

  /// Returns whether the input was cut at its limit of 1 GiB, as an endless one is.
  bool isTooLong() const;

  /// The file's location, or "standard input".
  std::filesystem::path file;
  platform::Bytes bytes;
};

/// The files that a command line names, in its order. Keeps only names and makes a location when it is asked
/// for one, so that a hundred thousand files take no more memory than their names.
class FileList {
 public:
  /// Lists the positional words, followed by the names in the list that an option may name; with --recursive,
  /// the MP3 files below a folder instead of the folder. Throws CLIError if there are none, and FileError for
  /// a list that cannot be used and a folder that cannot be read. The words must outlive the list.
  explicit FileList(const Arguments& arguments);
  /// Lists the files with these names. There may be none.
  explicit FileList(std::vector<std::string> names);

  FileList(FileList&&) = default;
  FileList& operator=(FileList&&) = default;

  std::size_t size() const { return files_.size(); }
  /// Returns the name as it was given.
  std::string_view name(std::size_t index) const { return files_[index].name; }
  /// Returns the file's absolute path.
  std::filesystem::path location(std::size_t index) const;
  /// Changes the order of the files to that of these positions, each of which must be there once.
  void reorder(const std::vector<std::size_t>& positions);
  /// Returns an object that reads ahead in a run over the files in their order. This list must outlive it.
  platform::ReadAhead readAhead() const {
    return {size(), [this](std::size_t index) { return location(index); }};
  }

 private:
  struct File {
    std::string_view name;
    /// Whether the name is, or starts with, a word of the command line, in which a leading tilde is expanded.
    bool isWord;
  };

  void addNamesIn(std::string_view list);
  void replaceFoldersByTheirFiles();

  std::vector<File> files_;
  /// The bytes of the list, which names refer to.
  platform::Bytes list_;
  /// Further names that are referred to.
  std::vector<std::vector<std::string>> names_;
};

}  // namespace quillmark
