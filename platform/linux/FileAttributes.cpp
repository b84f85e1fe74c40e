#include "platform/posix/FileAttributes.h"

#include <sys/xattr.h>

namespace platform::FileAttributes {

const char* const accessControlList = "system.posix_acl_access";

ssize_t list(int descriptor, char* names, std::size_t size) {
  return ::flistxattr(descriptor, names, size);
}

ssize_t get(int descriptor, const char* name, char* value, std::size_t size) {
  return ::fgetxattr(descriptor, name, value, size);
}

int set(int descriptor, const char* name, std::string_view value) {
  return ::fsetxattr(descriptor, name, value.data(), value.size(), 0);
}

int remove(int descriptor, const char* name) {
  return ::fremovexattr(descriptor, name);
}

bool isOfUser(std::string_view name) {
  return name.starts_with("user.") || name == accessControlList;
}

void copyFurther(const FileHandle&, const FileHandle&) {
}

}  // namespace platform::FileAttributes
