#include "platform/Pasteboard.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/FileError.h"
#include "platform/FileHandle.h"
#include "platform/Paths.h"
#include "platform/ReplacementRun.h"
#include "platform/base/Strings.h"

namespace platform {

namespace {

/// The name of the pasteboard in errors.
constexpr const char* shownName = "The clipboard";
constexpr std::string_view notUsed = "cannot be used";
constexpr const char* folderName = "quillmark";
constexpr const char* storeName = "pasteboard";
// The store is written under this name first. Only the holder of the lock writes it, so at most one such file
// remains after a crash, and the next writer removes it.
constexpr const char* unfinishedName = "pasteboard.unfinished";
constexpr const char* lockName = "lock";
constexpr std::string_view signature = "quillmark pasteboard 1\n";
constexpr std::string_view summaryType = "public.utf8-plain-text";
// More than the document of any tag takes: the texts and the picture of a tag share 256 MiB.
constexpr std::uint64_t greatestSize = std::uint64_t{1} << 31;

bool isOwn(const struct stat& attributes) {
  return attributes.st_uid == ::geteuid();
}

/// Returns whether the folder belongs to the user or to root, and is not writable for everyone.
bool isTrusted(const struct stat& attributes) {
  return (isOwn(attributes) || attributes.st_uid == 0) && (attributes.st_mode & S_IWOTH) == 0;
}

[[noreturn]] void refuse(std::string_view reason) {
  throw FileError(shownName, notUsed, reason);
}

[[noreturn]] void fail(std::string_view failure) {
  throw FileError(shownName, failure, errno);
}

enum class Purpose : std::uint8_t { read, write };

/// The folder of the pasteboard's files. Every operation throws FileError, which names the clipboard instead
/// of the file.
class Folder {
 public:
  /// Opens the folder. To write, creates it if absent and closes it to others. Throws FileError if others
  /// could have put the folder, or a link to it, in its place, and, to read, if others have access to it.
  Folder(const std::filesystem::path& home, Purpose purpose);

  /// Opens a file in the folder with these flags of open(2), which may create it. Throws FileError unless it
  /// is a regular file that belongs to the user; links are not followed.
  FileHandle file(const char* name, int flags) const;
  /// Renames the file `from` to `to`, and replaces a file that has that name.
  void rename(const char* from, const char* to) const;
  /// Removes the file if it exists.
  void remove(const char* name) const;

 private:
  Descriptor folder_;
};

Folder::Folder(const std::filesystem::path& home, Purpose purpose) {
  struct stat attributes {};
  const auto open = [&](int parent, const char* name, int flags) {
    Descriptor folder(::openat(parent, name, O_RDONLY | O_DIRECTORY | O_CLOEXEC | flags));
    if (!folder || ::fstat(folder.get(), &attributes) == -1) fail(notUsed);
    folder_ = std::move(folder);
  };
  const auto openIn = [&](const char* name, int flags) {
    if (purpose == Purpose::write && ::mkdirat(folder_.get(), name, 0700) == -1 && errno != EEXIST)
      fail(notUsed);
    open(folder_.get(), name, flags);
  };

  open(AT_FDCWD, home.c_str(), 0);
  if (!isOwn(attributes) || !isTrusted(attributes)) refuse("the home folder is not the user's alone");
  // The user's own links are allowed here: folders like these contain no links of other users.
  for (const char* name : {".local", "state"}) {
    openIn(name, 0);
    if (!isTrusted(attributes)) refuse("a folder above it is not the user's alone");
  }
  openIn(folderName, O_NOFOLLOW);
  if (!isOwn(attributes)) refuse("it belongs to another user");
  const bool isPrivate = (attributes.st_mode & 0077) == 0;
  if (!isPrivate && purpose == Purpose::read) refuse("others can use it");
  if (!isPrivate && ::fchmod(folder_.get(), 0700) == -1) fail(notUsed);
}

FileHandle Folder::file(const char* name, int flags) const {
  const int descriptor = ::openat(folder_.get(), name, flags | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0600);
  if (descriptor == -1 && errno == ELOOP) refuse("a link is in its place");
  if (descriptor == -1) fail(notUsed);
  FileHandle file(shownName, descriptor);
  if (!S_ISREG(file.attributes().st_mode) || !isOwn(file.attributes())) {
    refuse("it is no file of the user's own");
  }
  return file;
}

void Folder::rename(const char* from, const char* to) const {
  if (::renameat(folder_.get(), from, folder_.get(), to) == -1) fail(FileError::notWritten);
}

void Folder::remove(const char* name) const {
  if (::unlinkat(folder_.get(), name, 0) == -1 && errno != ENOENT) fail(FileError::notWritten);
}

/// Returns whether something was stored, or may have been.
bool mayHaveContent(const std::filesystem::path& home) {
  struct stat attributes {};
  const auto file = home / ".local/state" / folderName / storeName;
  return ::lstat(file.c_str(), &attributes) == 0 || (errno != ENOENT && errno != ENOTDIR);
}

[[noreturn]] void failForDamage() {
  throw FileError(shownName, FileError::notRead, "it is damaged, copy again");
}

std::optional<std::string_view> takeLine(std::string_view& text) {
  const std::size_t end = text.find('\n');
  if (end == std::string_view::npos) return std::nullopt;
  const std::string_view line = text.substr(0, end);
  text.remove_prefix(end + 1);
  return line;
}

/// Returns the document in the bytes after the signature, or nothing if they do not contain it. Each type is
/// a line with its name, a line with the length of its data, and the data. Throws FileError for anything
/// else.
std::optional<Bytes> documentIn(std::string_view stored) {
  std::optional<Bytes> document;
  while (!stored.empty()) {
    const auto type = takeLine(stored);
    const auto lengthLine = type ? takeLine(stored) : std::nullopt;
    const auto length = lengthLine ? Strings::decimalInteger(*lengthLine) : std::nullopt;
    if (!length || *length < 0 || static_cast<std::uint64_t>(*length) > stored.size()) failForDamage();
    const ByteView data = bytesOf(stored.substr(0, static_cast<std::size_t>(*length)));
    if (*type == Pasteboard::documentType) document.emplace(data.begin(), data.end());
    stored.remove_prefix(data.size());
  }
  return document;
}

/// Returns the locked file; other writers wait until it is closed.
FileHandle lockOf(const Folder& folder) {
  FileHandle file = folder.file(lockName, O_RDWR | O_CREAT);
  auto patience = lockPatience;
  lockForReplacement(file, patience);
  return file;
}

void replaceStore(const Folder& folder, std::string_view document, std::string_view summary) {
  folder.remove(unfinishedName);
  FileHandle file = folder.file(unfinishedName, O_WRONLY | O_CREAT | O_EXCL);
  file.write(bytesOf(signature));
  for (const auto& [type, data] :
       {std::pair(Pasteboard::documentType, document), std::pair(summaryType, summary)}) {
    file.write(bytesOf(std::string(type) + "\n" + std::to_string(data.size()) + "\n"));
    file.write(bytesOf(data));
  }
  file.synchronise();
  file.close();
  folder.rename(unfinishedName, storeName);
}

}  // namespace

Pasteboard Pasteboard::general() {
  return Pasteboard(homeDirectory());
}

void Pasteboard::store(std::string_view document, std::string_view summary) const {
  try {
    const Folder folder(home_, Purpose::write);
    const FileHandle lock = lockOf(folder);
    try {
      replaceStore(folder, document, summary);
    } catch (const FileError&) {
      // If the old content stayed, it would be taken for the new.
      folder.remove(storeName);
      folder.remove(unfinishedName);
      throw;
    }
  } catch (const FileError& error) {
    if (!mayHaveContent(home_)) throw;
    throw error.followedBy("What was copied before is still there.");
  }
}

std::optional<Bytes> Pasteboard::document() const {
  if (!mayHaveContent(home_)) return std::nullopt;
  FileHandle file = Folder(home_, Purpose::read).file(storeName, O_RDONLY);
  if (file.size() == 0) return std::nullopt;
  // Check the signature first, so that a foreign file is not read, however long it is.
  if (charactersOf(file.read(signature.size())) != signature || file.size() > greatestSize) failForDamage();
  const Bytes stored = file.read(static_cast<std::size_t>(file.size()) - signature.size());
  return documentIn(charactersOf(stored));
}

}  // namespace platform
