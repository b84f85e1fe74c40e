#include "platform/Pasteboard.h"

#include <fcntl.h>

#include <algorithm>

#include "platform/FileError.h"
#include "platform/FileHandle.h"
#include "platform/FileLock.h"
#include "platform/PasteboardFolder.h"
#include "platform/Paths.h"
#include "platform/base/Strings.h"

namespace platform {

namespace {

using Purpose = PasteboardFolder::Purpose;

constexpr const char* storeName = "pasteboard";
// The store is written under this name first. Only the holder of the lock writes it, so at most one such file
// remains after a crash, and the next writer removes it.
constexpr const char* unfinishedName = "pasteboard.unfinished";
constexpr const char* lockName = "lock";
constexpr std::string_view signature = "quillmark pasteboard 1\n";
// More than the document of any tag takes: the texts and the picture of a tag share 256 MiB.
constexpr std::uint64_t greatestSize = std::uint64_t{1} << 31;

[[noreturn]] void failForDamage() {
  throw FileError(PasteboardFolder::shownName, FileError::notRead, "it is damaged, copy again");
}

std::optional<std::string_view> takeLine(std::string_view& text) {
  const std::size_t end = text.find('\n');
  if (end == std::string_view::npos) return std::nullopt;
  const std::string_view line = text.substr(0, end);
  text.remove_prefix(end + 1);
  return line;
}

/// Returns the data of a type from the bytes after the signature, or nothing if they do not contain the type.
/// Each type is a line with its name, a line with the length of its data, and the data. Throws FileError for
/// anything else.
std::optional<ByteView> dataIn(std::string_view stored, std::string_view type) {
  std::optional<ByteView> found;
  while (!stored.empty()) {
    const auto name = takeLine(stored);
    const auto lengthLine = name ? takeLine(stored) : std::nullopt;
    const auto length = lengthLine ? Strings::decimalInteger(*lengthLine) : std::nullopt;
    if (!length || *length < 0 || static_cast<std::uint64_t>(*length) > stored.size()) failForDamage();
    const std::string_view data = stored.substr(0, static_cast<std::size_t>(*length));
    if (*name == type) found = bytesOf(data);
    stored.remove_prefix(data.size());
  }
  return found;
}

/// Returns the locked file; other writers wait until it is closed.
FileHandle lockOf(const PasteboardFolder& folder) {
  FileHandle file = folder.file(lockName, O_RDWR | O_CREAT);
  auto patience = lockPatience;
  lockForReplacement(file, patience);
  return file;
}

}  // namespace

Pasteboard Pasteboard::general() {
  return Pasteboard(homeDirectory());
}

void Pasteboard::clearContents() {
  content_.clear();
  if (!PasteboardFolder::mayHold(home_, storeName)) return;
  const PasteboardFolder folder(home_, Purpose::write);
  const FileHandle lock = lockOf(folder);
  folder.remove(storeName);
}

void Pasteboard::declareTypes(const std::vector<std::string>& types) {
  content_.clear();
  for (const std::string& type : types) content_.push_back({.type = type, .data = std::nullopt});
}

bool Pasteboard::setData(ByteView data, std::string_view forType) {
  const auto declared = std::ranges::find(content_, forType, &TypedData::type);
  if (declared == content_.end()) return false;
  declared->data = Bytes(data.begin(), data.end());
  if (std::ranges::all_of(content_, [](const auto& typed) { return typed.data.has_value(); })) store();
  return true;
}

bool Pasteboard::setString(std::string_view string, std::string_view forType) {
  return setData(bytesOf(string), forType);
}

void Pasteboard::replaceStore(const PasteboardFolder& folder) const {
  folder.remove(unfinishedName);
  FileHandle file = folder.file(unfinishedName, O_WRONLY | O_CREAT | O_EXCL);
  file.write(bytesOf(signature));
  for (const auto& [type, data] : content_) {
    file.write(bytesOf(type + "\n" + std::to_string(data->size()) + "\n"));
    file.write(*data);
  }
  file.synchronise();
  file.close();
  folder.rename(unfinishedName, storeName);
}

void Pasteboard::store() const {
  try {
    const PasteboardFolder folder(home_, Purpose::write);
    const FileHandle lock = lockOf(folder);
    try {
      replaceStore(folder);
    } catch (const FileError&) {
      // If the old content stayed, it would be taken for the new.
      folder.remove(storeName);
      folder.remove(unfinishedName);
      throw;
    }
  } catch (const FileError& error) {
    if (!PasteboardFolder::mayHold(home_, storeName)) throw;
    throw error.followedBy("What was copied before is still there.");
  }
}

std::optional<Bytes> Pasteboard::data(std::string_view forType) const {
  if (!PasteboardFolder::mayHold(home_, storeName)) return std::nullopt;
  FileHandle file = PasteboardFolder(home_, Purpose::read).file(storeName, O_RDONLY);
  if (file.size() == 0) return std::nullopt;
  // Check the signature first, so that a foreign file is not read, however long it is.
  if (charactersOf(file.read(signature.size())) != signature || file.size() > greatestSize) failForDamage();
  const Bytes stored = file.read(static_cast<std::size_t>(file.size()) - signature.size());
  const auto data = dataIn(charactersOf(stored), forType);
  return data ? std::optional(Bytes(data->begin(), data->end())) : std::nullopt;
}

}  // namespace platform
