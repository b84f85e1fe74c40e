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

/// The files that a command line names, in its order. Keeps only names and makes a location when it is asked
/// for one, so that a hundred thousand files take no more memory than their names.
class FileList {
 public:
  /// Lists the positional words, followed by the names in the list that an option may name; with --recursive,
  /// the MP3 files below a folder instead of the folder. Throws CLIError if there are none, and FileError for
  /// a list that cannot be used and a folder that cannot be read. The words must outlive the list.
  explicit FileList(const Arguments& arguments);
  /// Lists the files with these names, each ended by a NUL. There may be none.
  explicit FileList(platform::Bytes names);

  FileList(FileList&&) = default;
  FileList& operator=(FileList&&) = default;

  std::size_t size() const { return names_.size(); }
  /// Returns the name as it was given.
  std::string_view name(std::size_t index) const { return names_[index]; }
  /// Returns the file's absolute path. Expands a tilde for a home directory only in words of the command
  /// line.
  std::filesystem::path location(std::size_t index) const;
  /// Returns an object that reads ahead in a run over the files in their order. This list must outlive it.
  platform::ReadAhead readAhead() const {
    return {size(), [this](std::size_t index) { return location(index); }};
  }

 private:
  void addNamesIn(std::string_view list);
  void replaceFoldersByTheirFiles();
  bool addNamesInList();

  std::vector<std::string_view> names_;
  std::size_t wordCount_ = 0;
  /// The bytes of the list, which names refer to.
  platform::Bytes list_;
  /// The names of the files in folders, likewise.
  std::vector<std::vector<std::string>> found_;
};

}  // namespace quillmark
