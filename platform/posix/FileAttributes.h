#pragma once

#include <sys/stat.h>
#include <sys/types.h>

#include <cstddef>
#include <ctime>
#include <string_view>

#include "platform/FileHandle.h"

namespace platform {

// The members of `stat` that hold times have different names on Linux and on macOS.

template <class Status>
timespec accessTime(const Status& status) {
  if constexpr (requires { status.st_atim; }) {
    return status.st_atim;
  } else {
    return status.st_atimespec;
  }
}

template <class Status>
timespec modificationTime(const Status& status) {
  if constexpr (requires { status.st_mtim; }) {
    return status.st_mtim;
  } else {
    return status.st_mtimespec;
  }
}

/// Returns the time of the last change of attributes or contents.
template <class Status>
timespec changeTime(const Status& status) {
  if constexpr (requires { status.st_ctim; }) {
    return status.st_ctim;
  } else {
    return status.st_ctimespec;
  }
}

}  // namespace platform

/// Attributes of a file besides mode, owner and dates, which each system has in its own way. The functions
/// for extended attributes take and return what the system calls of Linux do: they fail with ERANGE if the
/// buffer is too small and with ENODATA if there is no such attribute, and return the size needed if the
/// buffer's size is 0. The access-control list is one of the attributes.
namespace platform::FileAttributes {

/// The name of the attribute that contains the access-control list.
extern const char* const accessControlList;

ssize_t list(int descriptor, char* names, std::size_t size);
ssize_t get(int descriptor, const char* name, char* value, std::size_t size);
int set(int descriptor, const char* name, std::string_view value);
int remove(int descriptor, const char* name);

/// Returns whether the attribute belongs to the user, so that a file must not lose it. Other attributes
/// belong to the system, which may refuse to set them.
bool isOfUser(std::string_view name);

/// Copies further attributes that the system has: file flags and the date of creation. Ignores errors.
void copyFurther(const FileHandle& original, const FileHandle& replacement);

}  // namespace platform::FileAttributes
