#pragma once

#include <cstddef>
#include <filesystem>
#include <string_view>
#include <vector>

#include "platform/base/Bytes.h"
#include "quillmark/Arguments.h"

namespace quillmark {

/// The files that a command line names, in its order. Only names are kept: a location is made when it is
/// asked for, so that a hundred thousand files take no more memory than their names.
class FileList {
 public:
  /// The positional words, and behind them the names in the list that an option may name. Throws CLIError
  /// when there are none, and FileError for a list that cannot be used. The words must outlive this.
  explicit FileList(const Arguments& arguments);

  FileList(FileList&&) = default;
  FileList& operator=(FileList&&) = default;

  std::size_t size() const { return names_.size(); }
  /// The name as it was given.
  std::string_view name(std::size_t index) const { return names_[index]; }
  /// Only a word of the command line may start with a tilde for a home directory.
  std::filesystem::path location(std::size_t index) const;

 private:
  void addNamesIn(std::string_view list);

  std::vector<std::string_view> names_;
  std::size_t wordCount_ = 0;
  /// What the names in the list are parts of.
  platform::Bytes list_;
};

}  // namespace quillmark
