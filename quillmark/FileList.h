#pragma once

#include <cstddef>
#include <filesystem>
#include <string_view>
#include <vector>

#include "quillmark/Arguments.h"

namespace quillmark {

/// The files that a command line names, in its order. Only names are kept: a location is made when it is
/// asked for, so that a hundred thousand files take no more memory than their names.
class FileList {
 public:
  /// Throws CLIError when no file is named. The words must outlive the list.
  explicit FileList(const Arguments& arguments);

  std::size_t size() const { return words_.size(); }
  /// The name as it was given.
  std::string_view name(std::size_t index) const { return words_[index]; }
  std::filesystem::path location(std::size_t index) const;

 private:
  std::vector<std::string_view> words_;
};

}  // namespace quillmark
