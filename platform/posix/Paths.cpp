#include "platform/Paths.h"

#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <optional>
#include <system_error>

#include "platform/FileError.h"
#include "platform/base/Strings.h"

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

}  // namespace platform

namespace platform::FileManager {

void createDirectoriesAbove(const std::filesystem::path& file) {
  if (!file.has_parent_path()) return;
  std::error_code failure;
  std::filesystem::create_directories(file.parent_path(), failure);
  if (failure) throw FileError(file, FileError::notWritten, failure.value());
}

}  // namespace platform::FileManager
