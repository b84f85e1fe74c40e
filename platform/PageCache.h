#pragma once

#include <cstddef>
#include <filesystem>

namespace platform::PageCache {

/// Brings the file's first bytes, and the ID3v2 tag that starts there, into the page cache, or starts to.
/// Returns whether they were already cached. If the file system cannot answer this, returns whether opening
/// and reading the file was as fast as if they were. Opens only regular files. Never throws: a file that
/// cannot be opened or read counts as cached, because nothing can be done for it.
///
/// Uses at most two descriptors at a time, and none after it returns. Can be called from several threads.
bool load(const std::filesystem::path& file) noexcept;

/// The largest number of descriptors that `load` has open at a time.
inline constexpr std::size_t descriptorsPerLoad = 2;

/// Returns how many more descriptors the process may open, or 0 if that is unknown.
std::size_t freeDescriptors();

}  // namespace platform::PageCache
