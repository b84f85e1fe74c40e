#include "platform/Pasteboard.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <ctime>
#include <utility>

#include "platform/Descriptor.h"
#include "platform/FileError.h"
#include "platform/FileHandle.h"
#include "platform/Paths.h"
#include "platform/Text.h"

namespace platform {

namespace {

constexpr std::string_view notUsed = "cannot be used";
// What errors call the store, whichever of its files they are about.
constexpr const char* shownName = "The clipboard";
constexpr const char* folderName = "quillmark";
constexpr const char* storeName = "pasteboard";
// Written under this name first. Only the holder of the lock does that, so a crashed writer leaves one such
// file at most, and the next writer takes it over.
constexpr const char* unfinishedName = "pasteboard.unfinished";
constexpr const char* lockName = "lock";
constexpr std::string_view signature = "quillmark pasteboard 1\n";
// More than the document of any tag takes, whose texts and picture share 256 MiB.
constexpr std::uint64_t greatestSize = std::uint64_t{1} << 31;

bool isOwn(const struct stat& attributes) {
  return attributes.st_uid == ::geteuid();
}

/// The folder is the user's or the system's, and not everybody can put things there.
bool isTrusted(const struct stat& attributes) {
  return (isOwn(attributes) || attributes.st_uid == 0) && (attributes.st_mode & S_IWOTH) == 0;
}

enum class Purpose : std::uint8_t { read, write };

/// The folder that holds the store. Throws FileError when it is missing or when others could have put it, or
/// a link to it, where it is. To read, it must be closed to others as it is; to write, it is made and closed.
Descriptor storeFolder(const std::filesystem::path& home, Purpose purpose) {
  const auto refuse = [](std::string_view reason) { throw FileError(shownName, notUsed, reason); };
  struct stat attributes {};
  const auto opened = [&](int parent, const char* name, int flags) {
    Descriptor folder(::openat(parent, name, O_RDONLY | O_DIRECTORY | O_CLOEXEC | flags));
    if (!folder || ::fstat(folder.get(), &attributes) == -1) throw FileError(shownName, notUsed, errno);
    return folder;
  };
  const auto madeIn = [&](const Descriptor& parent, const char* name) {
    if (purpose == Purpose::write) ::mkdirat(parent.get(), name, 0700);
  };

  Descriptor folder = opened(AT_FDCWD, home.c_str(), 0);
  if (!isOwn(attributes) || !isTrusted(attributes)) refuse("the home folder is not the user's alone");
  // Links of the user's own are fine here: in folders like these nobody else can have planted one.
  for (const char* name : {".local", "state"}) {
    madeIn(folder, name);
    folder = opened(folder.get(), name, 0);
    if (!isTrusted(attributes)) refuse("a folder above it is not the user's alone");
  }
  madeIn(folder, folderName);
  folder = opened(folder.get(), folderName, O_NOFOLLOW);
  if (!isOwn(attributes)) refuse("it belongs to another user");
  const bool isPrivate = (attributes.st_mode & 0077) == 0;
  if (!isPrivate && purpose == Purpose::read) refuse("others can use it");
  if (!isPrivate && ::fchmod(folder.get(), 0700) == -1) throw FileError(shownName, notUsed, errno);
  return folder;
}

/// The user's own regular file of that name, and no link; `flags` may create it. Throws FileError.
FileHandle ownFile(int folder, const char* name, int flags) {
  FileHandle file(shownName, ::openat(folder, name, flags | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0600));
  if (!S_ISREG(file.attributes().st_mode) || !isOwn(file.attributes())) {
    throw FileError(shownName, notUsed, "it is no file of the user's own");
  }
  return file;
}

/// Waits for other writers, but not for one that has come to a stop.
void lock(const FileHandle& file) {
  constexpr timespec pause{.tv_sec = 0, .tv_nsec = 20'000'000};
  constexpr int mostAttempts = 500;
  for (int attempt = 0; ::flock(file.descriptor(), LOCK_EX | LOCK_NB) == -1; ++attempt) {
    if (errno != EWOULDBLOCK || attempt == mostAttempts)
      throw FileError(shownName, FileError::notWritten, errno);
    ::nanosleep(&pause, nullptr);
  }
}

std::optional<std::string_view> takeLine(std::string_view& text) {
  const std::size_t end = text.find('\n');
  if (end == std::string_view::npos) return std::nullopt;
  const std::string_view line = text.substr(0, end);
  text.remove_prefix(end + 1);
  return line;
}

/// The data of a type among what stands behind the signature: for each type, a line with its name, a line
/// with the length of its data, and the data. Nothing for anything else.
std::optional<ByteView> dataIn(std::string_view stored, std::string_view type) {
  std::optional<ByteView> found;
  while (!stored.empty()) {
    const auto name = takeLine(stored);
    const auto lengthLine = name ? takeLine(stored) : std::nullopt;
    const auto length = lengthLine ? Text::decimalInteger(*lengthLine) : std::nullopt;
    if (!length || *length < 0 || static_cast<std::uint64_t>(*length) > stored.size()) return std::nullopt;
    const std::string_view data = stored.substr(0, static_cast<std::size_t>(*length));
    if (*name == type) found = bytesOf(data);
    stored.remove_prefix(data.size());
  }
  return found;
}

}  // namespace

Pasteboard Pasteboard::general() {
  return Pasteboard(homeDirectory());
}

void Pasteboard::clearContents() {
  content_.clear();
}

void Pasteboard::declareTypes(const std::vector<std::string>& types) {
  for (const std::string& type : types) content_.push_back({.type = type, .data = std::nullopt});
}

bool Pasteboard::setData(ByteView data, std::string_view forType) {
  const auto declared = std::ranges::find(content_, forType, &TypedData::type);
  if (declared == content_.end()) return false;
  declared->data = Bytes(data.begin(), data.end());
  const bool isComplete =
      std::ranges::all_of(content_, [](const auto& typed) { return typed.data.has_value(); });
  return !isComplete || store();
}

bool Pasteboard::setString(std::string_view string, std::string_view forType) {
  return setData(bytesOf(string), forType);
}

void Pasteboard::replaceStore(int folder) const {
  ::unlinkat(folder, unfinishedName, 0);
  FileHandle file = ownFile(folder, unfinishedName, O_WRONLY | O_CREAT | O_EXCL);
  file.write(bytesOf(signature));
  for (const auto& [type, data] : content_) {
    file.write(bytesOf(type + "\n" + std::to_string(data->size()) + "\n"));
    file.write(*data);
  }
  file.synchronise();
  file.close();
  if (::renameat(folder, unfinishedName, folder, storeName) == -1) {
    throw FileError(shownName, FileError::notWritten, errno);
  }
}

bool Pasteboard::store() {
  std::optional<Descriptor> folder;
  try {
    folder = storeFolder(home_, Purpose::write);
  } catch (const FileError& error) {
    // What cannot be found to write is not found to read either.
    failure_ = error.what();
    return false;
  }
  const FileHandle lockFile = ownFile(folder->get(), lockName, O_RDWR | O_CREAT);
  lock(lockFile);
  try {
    replaceStore(folder->get());
    return true;
  } catch (const FileError& error) {
    failure_ = error.what();
  }
  ::unlinkat(folder->get(), unfinishedName, 0);
  // The old content was to be cleared in any case. Left there, it would be taken for the new.
  if (::unlinkat(folder->get(), storeName, 0) == -1 && errno != ENOENT) {
    throw FileError(shownName, FileError::notWritten, errno);
  }
  return false;
}

std::optional<Bytes> Pasteboard::data(std::string_view forType) const {
  try {
    const Descriptor folder = storeFolder(home_, Purpose::read);
    FileHandle file = ownFile(folder.get(), storeName, O_RDONLY);
    // Whatever else lies there is not read, however long it is.
    if (charactersOf(file.read(signature.size())) != signature || file.size() > greatestSize)
      return std::nullopt;
    const Bytes stored = file.read(file.size() - signature.size());
    const auto data = dataIn(charactersOf(stored), forType);
    return data ? std::optional(Bytes(data->begin(), data->end())) : std::nullopt;
  } catch (const FileError&) {
    return std::nullopt;
  }
}

}  // namespace platform
