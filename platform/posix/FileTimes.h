#pragma once

#include <sys/stat.h>

#include <ctime>

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
