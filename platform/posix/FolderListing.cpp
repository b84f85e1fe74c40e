#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <utility>

#include "platform/FileError.h"
#include "platform/FileManager.h"
#include "platform/base/Strings.h"
#include "platform/posix/FolderStream.h"

namespace platform::FileManager {

namespace {

/// Opens the folder. If `linkFlag` is not 0, as for all but the first folder, returns nothing if it no longer
/// exists.
FolderStream openFolder(const std::filesystem::path& folder, int linkFlag) {
  FolderStream stream =
      streamOf(Descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | linkFlag)));
  if (!stream) {
    const bool isGone = errno == ENOENT || errno == ENOTDIR || errno == ELOOP;
    if (isGone && linkFlag != 0) return nullptr;
    throw FileError(folder, FileError::notRead, errno);
  }
  return stream;
}

enum class Kind : std::uint8_t { folder, file, other };

Kind kindOf(const dirent& entry, int folder) {
  switch (entry.d_type) {
    case DT_DIR:
      return Kind::folder;
    case DT_REG:
      return Kind::file;
    case DT_LNK:
    case DT_UNKNOWN:
      break;
    default:
      return Kind::other;
  }
  struct stat status {};
  const bool isKnown = ::fstatat(folder, entry.d_name, &status, AT_SYMLINK_NOFOLLOW) == 0;
  if (isKnown && S_ISDIR(status.st_mode)) return Kind::folder;
  const bool hasTarget = isKnown && ::fstatat(folder, entry.d_name, &status, 0) == 0;
  return hasTarget && S_ISREG(status.st_mode) ? Kind::file : Kind::other;
}

bool endsIn(std::string_view name, std::string_view ending) {
  return name.size() >= ending.size() &&
         Strings::equalIgnoringASCIICase(name.substr(name.size() - ending.size()), ending);
}

/// Compares paths by their components: a slash sorts before every other byte.
bool isBefore(std::string_view a, std::string_view b) {
  const auto rank = [](char byte) { return byte == '/' ? 0 : static_cast<unsigned char>(byte); };
  return std::ranges::lexicographical_compare(a, b, {}, rank, rank);
}

}  // namespace

bool exists(const std::filesystem::path& file) {
  struct stat status {};
  return ::lstat(file.c_str(), &status) == 0;
}

bool isFolder(const std::filesystem::path& file) {
  struct stat status {};
  return ::stat(file.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

std::vector<std::string> filesBelow(const std::filesystem::path& folder, std::string_view ending) {
  std::vector<std::string> files;
  std::vector<std::string> folders{""};
  while (!folders.empty()) {
    const std::string prefix = std::move(folders.back());
    folders.pop_back();
    // With a slash at the end, the system would follow a link.
    const auto path = prefix.empty() ? folder : folder / prefix.substr(0, prefix.size() - 1);
    const FolderStream stream = openFolder(path, prefix.empty() ? 0 : O_NOFOLLOW);
    while (stream) {
      errno = 0;
      const dirent* entry = ::readdir(stream.get());
      if (entry == nullptr && errno != 0) throw FileError(path, FileError::notRead, errno);
      if (entry == nullptr) break;
      const std::string_view name = entry->d_name;
      if (name.starts_with('.')) continue;
      const Kind kind = kindOf(*entry, ::dirfd(stream.get()));
      if (kind == Kind::folder) folders.push_back(prefix + std::string(name) + "/");
      if (kind == Kind::file && endsIn(name, ending)) files.push_back(prefix + std::string(name));
    }
  }
  std::ranges::sort(files, isBefore);
  return files;
}

}  // namespace platform::FileManager
