#pragma once

#include <sys/stat.h>
#include <sys/types.h>

#include <cstddef>
#include <string_view>

#include "platform/FileHandle.h"

/// What belongs to a file beside its mode, owner and dates, as each system has it. The calls for extended
/// attributes take and return what those of Linux do: ERANGE if there is not enough room, ENODATA if there is
/// no such attribute, and without room the size. The access-control list is one of the attributes.
namespace platform::FileAttributes {

/// The name of the attribute that is the access-control list.
extern const char* const accessControlList;

ssize_t list(int descriptor, char* names, std::size_t size);
ssize_t get(int descriptor, const char* name, char* value, std::size_t size);
int set(int descriptor, const char* name, std::string_view value);
int remove(int descriptor, const char* name);

/// Returns whether the attribute is the user's, so that a file must not lose it. Others belong to the system,
/// and may be out of the user's reach.
bool isOfUser(std::string_view name);

/// Gives the replacement what the system keeps about the original besides: file flags and the date of its
/// creation. What is refused is left.
void copyFurther(const FileHandle& original, const FileHandle& replacement);

}  // namespace platform::FileAttributes
