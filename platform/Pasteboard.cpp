#include "platform/Pasteboard.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <utility>

#include "platform/FileError.h"
#include "platform/FileHandle.h"
#include "platform/Paths.h"
#include "platform/Text.h"

namespace platform {

namespace {

constexpr const char* storeName = "pasteboard";
// Written under this name first. Only the holder of the lock does that, so a crashed writer leaves one such
// file at most, and the next writer takes it over.
constexpr const char* unfinishedName = "pasteboard.unfinished";
constexpr const char* lockName = "lock";
constexpr std::string_view signature = "quillmark pasteboard 1\n";

/// A descriptor that is closed with this object; -1 when there is none.
class Descriptor {
 public:
  explicit Descriptor(int descriptor = -1) : descriptor_(descriptor) {}
  Descriptor(Descriptor&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    return *this;
  }
  ~Descriptor() {
    if (descriptor_ != -1) ::close(descriptor_);
  }
  int get() const { return descriptor_; }
  int release() { return std::exchange(descriptor_, -1); }
  explicit operator bool() const { return descriptor_ != -1; }

 private:
  int descriptor_;
};

bool isOwn(const struct stat& attributes) {
  return attributes.st_uid == ::geteuid();
}

/// Nobody but the user and the system's administrator can have put it there.
bool isTrusted(const struct stat& attributes) {
  return isOwn(attributes) || attributes.st_uid == 0;
}

enum class Missing { staysMissing, isCreated };

/// The folder `name` in `parent`, if nobody else can have put it, or a link to it, there.
Descriptor trustedFolder(const Descriptor& parent, const char* name, Missing missing) {
  if (missing == Missing::isCreated) ::mkdirat(parent.get(), name, 0700);
  struct stat attributes {};
  if (::fstatat(parent.get(), name, &attributes, AT_SYMLINK_NOFOLLOW) == -1 || !isTrusted(attributes)) {
    return Descriptor();
  }
  Descriptor folder(::openat(parent.get(), name, O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!folder || ::fstat(folder.get(), &attributes) == -1 || !isTrusted(attributes)) return Descriptor();
  return folder;
}

/// The folder that holds the store; none when it is missing or is not the user's alone.
Descriptor storeFolder(const std::filesystem::path& home, Missing missing) {
  Descriptor folder(::open(home.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  for (const char* name : {".local", "state", "quillmark"}) {
    if (!folder) return Descriptor();
    folder = trustedFolder(folder, name, missing);
  }
  struct stat attributes {};
  if (!folder || ::fstat(folder.get(), &attributes) == -1 || !isOwn(attributes)) return Descriptor();
  const bool isPrivate = (attributes.st_mode & 0077) == 0;
  if (!isPrivate && ::fchmod(folder.get(), 0700) == -1) return Descriptor();
  return folder;
}

/// Opens the user's own regular file of that name, and no link; `flags` may create it.
Descriptor ownFile(const Descriptor& folder, const char* name, int flags) {
  Descriptor file(::openat(folder.get(), name, flags | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0600));
  struct stat attributes {};
  const bool isUsable =
      file && ::fstat(file.get(), &attributes) == 0 && S_ISREG(attributes.st_mode) && isOwn(attributes);
  return isUsable ? std::move(file) : Descriptor();
}

std::optional<std::string_view> takeLine(std::string_view& text) {
  const std::size_t end = text.find('\n');
  if (end == std::string_view::npos) return std::nullopt;
  const std::string_view line = text.substr(0, end);
  text.remove_prefix(end + 1);
  return line;
}

/// A store is its signature and, for each type, a line with its name, a line with the length of its data, and
/// the data. Nothing for anything else.
std::optional<ByteView> dataIn(ByteView stored, std::string_view type) {
  std::string_view rest = charactersOf(stored);
  if (!rest.starts_with(signature)) return std::nullopt;
  rest.remove_prefix(signature.size());
  std::optional<ByteView> found;
  while (!rest.empty()) {
    const auto name = takeLine(rest);
    const auto lengthLine = name ? takeLine(rest) : std::nullopt;
    const auto length = lengthLine ? Text::decimalInteger(*lengthLine) : std::nullopt;
    if (!length || *length < 0 || static_cast<std::uint64_t>(*length) > rest.size()) return std::nullopt;
    const std::string_view data = rest.substr(0, static_cast<std::size_t>(*length));
    if (*name == type) found = bytesOf(data);
    rest.remove_prefix(data.size());
  }
  return found;
}

using Content = std::map<std::string, std::optional<Bytes>, std::less<>>;

/// Writes the content beside the store and puts it in the store's place.
bool replaceStore(const Descriptor& folder, const Content& content) {
  const Descriptor lock = ownFile(folder, lockName, O_RDWR | O_CREAT);
  if (!lock || ::flock(lock.get(), LOCK_EX) == -1) return false;
  ::unlinkat(folder.get(), unfinishedName, 0);
  try {
    FileHandle file(storeName, ownFile(folder, unfinishedName, O_WRONLY | O_CREAT | O_EXCL).release());
    file.write(bytesOf(signature));
    for (const auto& [type, data] : content) {
      file.write(bytesOf(type + "\n" + std::to_string(data->size()) + "\n"));
      file.write(*data);
    }
    file.synchronise();
    file.close();
  } catch (const FileError&) {
    ::unlinkat(folder.get(), unfinishedName, 0);
    return false;
  }
  return ::renameat(folder.get(), unfinishedName, folder.get(), storeName) == 0;
}

}  // namespace

Pasteboard Pasteboard::general() {
  return Pasteboard(homeDirectory());
}

void Pasteboard::clearContents() {
  content_.clear();
}

void Pasteboard::declareTypes(const std::vector<std::string>& types) {
  for (const std::string& type : types) content_.emplace(type, std::nullopt);
}

bool Pasteboard::setData(ByteView data, std::string_view forType) {
  const auto declared = content_.find(forType);
  if (declared == content_.end()) return false;
  declared->second = Bytes(data.begin(), data.end());
  const bool isComplete =
      std::ranges::all_of(content_, [](const auto& type) { return type.second.has_value(); });
  return !isComplete || store();
}

bool Pasteboard::setString(std::string_view string, std::string_view forType) {
  return setData(bytesOf(string), forType);
}

bool Pasteboard::store() const {
  const Descriptor folder = storeFolder(home_, Missing::isCreated);
  if (!folder) return false;
  if (replaceStore(folder, content_)) return true;
  // The old content was to be cleared in any case. Left there, it would be taken for the new.
  if (::unlinkat(folder.get(), storeName, 0) == -1 && errno != ENOENT) {
    throw FileError(storeName, FileError::notWritten, errno);
  }
  return false;
}

std::optional<Bytes> Pasteboard::data(std::string_view forType) const {
  const Descriptor folder = storeFolder(home_, Missing::staysMissing);
  if (!folder) return std::nullopt;
  try {
    FileHandle handle(storeName, ownFile(folder, storeName, O_RDONLY).release());
    const Bytes stored = handle.read(handle.size());
    const auto data = dataIn(stored, forType);
    return data ? std::optional(Bytes(data->begin(), data->end())) : std::nullopt;
  } catch (const FileError&) {
    return std::nullopt;
  }
}

}  // namespace platform
