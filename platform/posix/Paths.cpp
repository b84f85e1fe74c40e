#include "platform/Paths.h"

#include <dirent.h>
#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <optional>
#include <system_error>
#include <utility>

#include "platform/FileError.h"
#include "platform/base/Strings.h"
#include "platform/posix/SystemFiles.h"

namespace platform {

namespace {

std::optional<std::string> homeOf(const std::string& user) {
  const struct passwd* entry = ::getpwnam(user.c_str());
  if (entry == nullptr) return std::nullopt;
  return std::string(entry->pw_dir);
}

/// Returns the absolute path without "." and empty components. Keeps "..", because it depends on links where
/// that leads, and a slash at the end, which requires a folder.
std::filesystem::path tidied(std::string_view path) {
  std::string tidy;
  tidy.reserve(path.size());
  for (const std::string_view component : Strings::split(path, '/')) {
    if (component != ".") tidy.append("/").append(component);
  }
  if (path.ends_with('/') || path.ends_with("/.")) tidy += '/';
  return tidy;
}

}  // namespace

std::filesystem::path homeDirectory() {
  const char* home = std::getenv("HOME");
  if (home != nullptr && *home == '/') return home;
  const struct passwd* entry = ::getpwuid(::getuid());
  return entry != nullptr ? entry->pw_dir : "/";
}

std::string expandingTilde(std::string_view path) {
  if (!path.starts_with('~')) return std::string(path);
  const std::size_t slash = std::min(path.find('/'), path.size());
  const std::string user(path.substr(1, slash - 1));
  const std::optional<std::string> home = user.empty() ? homeDirectory().native() : homeOf(user);
  if (!home) return std::string(path);
  return *home + std::string(path.substr(slash));
}

std::filesystem::path absoluteLocation(std::string_view name) {
  std::filesystem::path location = name;
  // An empty name names no file, and must not become the current folder.
  if (location.empty()) return location;
  std::error_code failure;
  const std::filesystem::path absolute = std::filesystem::absolute(location, failure);
  // If the current folder is gone, errors show the name alone. A path that is too long for the system can
  // still be a short name in the current folder.
  return failure || absolute.native().size() >= PATH_MAX ? location : tidied(absolute.native());
}

std::filesystem::path realLocation(const std::filesystem::path& location) {
  std::error_code failure;
  std::filesystem::path real = std::filesystem::canonical(location, failure);
  return failure ? location : real;
}

std::filesystem::path fileLocation(std::string_view word) {
  return absoluteLocation(expandingTilde(word));
}

std::optional<bool> isEmptyFolder(int folder) {
  const FolderStream stream = streamOf(
      Descriptor(retrying([&] { return ::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC); })));
  if (!stream) return std::nullopt;
  for (;;) {
    errno = 0;
    const dirent* entry = ::readdir(stream.get());
    if (entry == nullptr) return errno == 0 ? std::optional(true) : std::nullopt;
    const std::string_view name = entry->d_name;
    if (name != "." && name != "..") return false;
  }
}

}  // namespace platform

namespace platform::FileManager {

namespace {

/// Returns nothing, for the reason in errno, if the folder cannot be read.
FolderStream openFolder(const std::filesystem::path& folder, int linkFlag) {
  const int flags = O_RDONLY | O_DIRECTORY | O_CLOEXEC | linkFlag;
  return streamOf(Descriptor(retrying([&] { return ::open(folder.c_str(), flags); })));
}

/// Returns whether a folder that was just found could not be opened because it has vanished or been replaced.
bool isGone() {
  return errno == ENOENT || errno == ENOTDIR || errno == ELOOP;
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

void createDirectoriesAbove(const std::filesystem::path& file) {
  if (!file.has_parent_path()) return;
  std::error_code failure;
  std::filesystem::create_directories(file.parent_path(), failure);
  if (failure) throw FileError(file, FileError::notWritten, failure.value());
}

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
    if (!stream && prefix.empty()) throw FileError(folder, FileError::notRead, errno);
    if (!stream && !isGone()) files.push_back(prefix.substr(0, prefix.size() - 1));
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
