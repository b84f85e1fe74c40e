#include "quillmark/FileList.h"

#include <cstdint>
#include <utility>

#include "platform/FileError.h"
#include "platform/Paths.h"
#include "platform/StandardStreams.h"

namespace quillmark {

namespace {

constexpr std::uint64_t limit = std::uint64_t{1} << 30;

}  // namespace

NamedInput::NamedInput(std::string_view word)
    : file(word == "-" ? "standard input" : platform::fileLocation(word)),
      bytes(word == "-" ? platform::Input::contentsOfStandardInput(limit)
                        : platform::Input::contents(file, limit)) {
}

bool NamedInput::isTooLong() const {
  return bytes.size() == limit;
}

FileList::FileList(const Arguments& arguments) {
  for (const std::string_view word : arguments.positional) files_.push_back({word, true});
  if (const auto list = arguments.value(options::files0From)) addNamesIn(*list);
  if (files_.empty()) throw CLIError::noFiles();
  if (arguments.has(options::recursive)) replaceFoldersByTheirFiles();
}

FileList::FileList(std::vector<std::string> names) {
  names_.push_back(std::move(names));
  for (const std::string& name : names_.front()) files_.push_back({name, false});
}

void FileList::addNamesIn(std::string_view list) {
  // The list is read to its end before the first file is touched, because a program such as find may still be
  // writing it and must not see our changes.
  NamedInput input(list);
  const auto refuse = [&](std::string_view reason) {
    throw platform::FileError(input.file, "cannot be used as a list of files", reason);
  };
  if (input.isTooLong()) refuse("it is longer than 1 GiB");
  list_ = std::move(input.bytes);
  if (!list_.empty() && list_.back() != 0)
    refuse("its last name is not ended by a NUL, as find -print0 does");
  for (std::string_view rest = platform::charactersOf(list_); !rest.empty();) {
    const std::size_t end = rest.find('\0');
    if (end == 0) refuse("a name in it is empty");
    files_.push_back({rest.substr(0, end), false});
    rest.remove_prefix(end + 1);
  }
}

void FileList::replaceFoldersByTheirFiles() {
  std::vector<File> files;
  for (std::size_t i = 0; i < files_.size(); ++i) {
    const auto& [name, isWord] = files_[i];
    const std::filesystem::path file = location(i);
    if (!platform::FileManager::isFolder(file)) {
      files.push_back(files_[i]);
      continue;
    }
    std::vector<std::string>& found = names_.emplace_back(platform::FileManager::filesBelow(file, ".mp3"));
    const std::string folder = std::string(name) + (name.ends_with('/') ? "" : "/");
    for (std::string& below : found) files.push_back({below.insert(0, folder), isWord});
  }
  if (files.empty()) {
    throw CLIError("No file that ends in .mp3 is in " + std::string(files_.front().name) + ".");
  }
  files_ = std::move(files);
}

void FileList::reorder(const std::vector<std::size_t>& positions) {
  std::vector<File> files;
  files.reserve(positions.size());
  for (const std::size_t position : positions) files.push_back(files_[position]);
  files_ = std::move(files);
}

std::filesystem::path FileList::location(std::size_t index) const {
  const auto& [name, isWord] = files_[index];
  return isWord ? platform::fileLocation(name) : platform::absoluteLocation(name);
}

}  // namespace quillmark
