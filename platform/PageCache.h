#pragma once

#include <cstddef>
#include <filesystem>

namespace platform::PageCache {

/// Brings the file's first bytes, and the ID3v2 tag that starts there, into the page cache, or starts to.
/// Returns whether they were in it already; where the file system cannot answer this, whether the file was
/// opened and read as fast as if they were. Only regular files are opened. Never throws: what cannot be
/// opened or read counts as present, because nothing can be done for it.
///
/// Uses at most two descriptors at a time, and none after it returns. Can be called from several threads.
bool load(const std::filesystem::path& file) noexcept;

/// The most descriptors that `load` has open at a time.
inline constexpr std::size_t descriptorsPerLoad = 2;

/// Returns how many more descriptors the process may open; 0 if the system does not say.
std::size_t freeDescriptors();

}  // namespace platform::PageCache
