#pragma once

#include <sys/stat.h>

#include <cstdint>
#include <filesystem>
#include <span>

#include "platform/FileHandle.h"

/// Operations on the page cache that each system does in its own way.
namespace platform::CachedReading {

enum class Presence : std::uint8_t { present, absent, unknown };

/// Fills the buffer with the file's bytes from `offset` on if they are in the page cache, without waiting for
/// a disk or a network. Returns `unknown` if the system or the file system cannot answer this.
Presence peek(int descriptor, std::span<std::uint8_t> buffer, std::uint64_t offset);

/// Opens a regular file for reading and sets `attributes` to its attributes. Returns no descriptor for
/// anything else: opening a pipe or a device could be noticed at its other end.
Descriptor openRegular(const std::filesystem::path& file, struct stat& attributes);

/// Asks the system to bring these bytes of the file into the page cache, and returns at once.
void loadSoon(int descriptor, std::uint64_t offset, std::uint64_t length);

/// Returns the folder that lists the process's own descriptors.
const char* folderOfDescriptors();

}  // namespace platform::CachedReading
