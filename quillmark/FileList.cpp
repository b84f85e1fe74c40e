#include "quillmark/FileList.h"

#include <utility>

#include "platform/FileError.h"
#include "platform/Paths.h"
#include "platform/StandardStreams.h"

namespace quillmark {

FileList::FileList(const Arguments& arguments)
    : names_(arguments.positional), wordCount_(arguments.positional.size()) {
  if (const auto list = arguments.value(options::files0From)) addNamesIn(*list);
  if (names_.empty()) throw CLIError("No files given.");
  if (arguments.has(options::recursive)) replaceFoldersByTheirFiles();
}

void FileList::replaceFoldersByTheirFiles() {
  std::vector<std::string_view> names;
  std::size_t wordCount = 0;
  for (std::size_t i = 0; i < names_.size(); ++i) {
    const std::filesystem::path file = location(i);
    if (!platform::FileManager::isFolder(file)) {
      names.push_back(names_[i]);
    } else {
      std::vector<std::string>& found = found_.emplace_back(platform::FileManager::filesBelow(file, ".mp3"));
      const std::string folder = std::string(names_[i]) + (names_[i].ends_with('/') ? "" : "/");
      for (std::string& name : found) names.emplace_back(name.insert(0, folder));
    }
    if (i < wordCount_) wordCount = names.size();
  }
  if (names.empty()) throw CLIError("No file that ends in .mp3 is in " + std::string(names_.front()) + ".");
  names_ = std::move(names);
  wordCount_ = wordCount;
}

FileList::FileList(platform::Bytes names) : list_(std::move(names)) {
  addNamesInList();
}

void FileList::addNamesIn(std::string_view list) {
  // No run has that many names; an endless input is cut here.
  constexpr std::uint64_t limit = std::uint64_t{1} << 30;
  const bool isStandardInput = list == "-";
  const std::filesystem::path file = isStandardInput ? "standard input" : platform::fileLocation(list);
  // The list is read to its end before the first file is touched, because a program such as find may still be
  // writing it and must not see our changes.
  list_ = isStandardInput ? platform::Input::contentsOfStandardInput(limit)
                          : platform::Input::contents(file, limit);
  const auto refuse = [&](std::string_view reason) {
    throw platform::FileError(file, "cannot be used as a list of files", reason);
  };
  if (list_.size() == limit) refuse("it is longer than 1 GiB");
  if (!list_.empty() && list_.back() != 0)
    refuse("its last name is not ended by a NUL, as find -print0 does");
  if (!addNamesInList()) refuse("a name in it is empty");
}

/// Returns false if one of the names is empty.
bool FileList::addNamesInList() {
  for (std::string_view rest = platform::charactersOf(list_); !rest.empty();) {
    const std::size_t end = rest.find('\0');
    if (end == 0) return false;
    names_.push_back(rest.substr(0, end));
    rest.remove_prefix(end + 1);
  }
  return true;
}

std::filesystem::path FileList::location(std::size_t index) const {
  const std::string_view name = names_[index];
  return index < wordCount_ ? platform::fileLocation(name) : platform::absoluteLocation(name);
}

}  // namespace quillmark
