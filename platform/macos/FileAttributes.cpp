#include "platform/posix/FileAttributes.h"

#include <sys/acl.h>
#include <sys/attr.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <memory>
#include <type_traits>

namespace platform::FileAttributes {

namespace {

struct FreeList {
  void operator()(acl_t list) const { ::acl_free(list); }
};
using List = std::unique_ptr<std::remove_pointer_t<acl_t>, FreeList>;

// The list of an open file is no attribute here, but gets a name among them. No attribute can have it.
constexpr const char* listName = "/access-control list";

bool isList(const char* name) {
  return std::string_view(name) == listName;
}

/// Returns nothing, for the reason in errno, if there is no list; ENODATA if that is the reason.
List listOf(int descriptor) {
  List list(::acl_get_fd_np(descriptor, ACL_TYPE_EXTENDED));
  if (!list && (errno == ENOENT || errno == ENOTSUP)) errno = ENODATA;
  return list;
}

/// Translates the error of the calls for attributes.
template <class Result>
Result translated(Result result) {
  if (result == -1 && errno == ENOATTR) errno = ENODATA;
  return result;
}

}  // namespace

const char* const accessControlList = listName;

ssize_t list(int descriptor, char* names, std::size_t size) {
  // The list has its name in front, so that there is room for it if there is for the rest.
  const List own = listOf(descriptor);
  if (!own && errno != ENODATA) return -1;
  const std::size_t nameSize = own ? std::strlen(listName) + 1 : 0;
  if (size != 0 && size <= nameSize) {
    errno = ERANGE;
    return -1;
  }
  if (size != 0) std::memcpy(names, listName, nameSize);
  char* const rest = size != 0 ? names + nameSize : nullptr;
  const ssize_t count = ::flistxattr(descriptor, rest, size != 0 ? size - nameSize : 0, 0);
  return count == -1 ? count : count + static_cast<ssize_t>(nameSize);
}

ssize_t get(int descriptor, const char* name, char* value, std::size_t size) {
  if (!isList(name)) return translated(::fgetxattr(descriptor, name, value, size, 0, 0));
  const List own = listOf(descriptor);
  const ssize_t needed = own ? ::acl_size(own.get()) : -1;
  if (needed == -1) return -1;
  if (size == 0) return needed;
  if (static_cast<std::size_t>(needed) > size) {
    errno = ERANGE;
    return -1;
  }
  return ::acl_copy_ext_native(value, own.get(), static_cast<ssize_t>(size));
}

int set(int descriptor, const char* name, std::string_view value) {
  if (!isList(name)) return ::fsetxattr(descriptor, name, value.data(), value.size(), 0, 0);
  const List own(::acl_copy_int_native(value.data()));
  return own ? ::acl_set_fd_np(descriptor, own.get(), ACL_TYPE_EXTENDED) : -1;
}

int remove(int descriptor, const char* name) {
  if (!isList(name)) return translated(::fremovexattr(descriptor, name, 0));
  if (!listOf(descriptor)) return -1;
  const List none(::acl_init(1));
  return none ? ::acl_set_fd_np(descriptor, none.get(), ACL_TYPE_EXTENDED) : -1;
}

bool isOfUser(std::string_view name) {
  constexpr auto shown = std::to_array<std::string_view>({"com.apple.ResourceFork", "com.apple.FinderInfo"});
  return !name.starts_with("com.apple.") || name.starts_with("com.apple.metadata:") ||
         std::ranges::find(shown, name) != shown.end();
}

void copyFurther(const FileHandle& original, const FileHandle& replacement) {
  const struct stat& attributes = original.attributes();
  timespec created = attributes.st_birthtimespec;
  struct attrlist wanted {};
  wanted.bitmapcount = ATTR_BIT_MAP_COUNT;
  wanted.commonattr = ATTR_CMN_CRTIME;
  ::fsetattrlist(replacement.descriptor(), &wanted, &created, sizeof(created), 0);
  constexpr std::uint32_t kept = UF_NODUMP | UF_OPAQUE | UF_HIDDEN;
  if ((attributes.st_flags & kept) != 0) ::fchflags(replacement.descriptor(), attributes.st_flags & kept);
}

}  // namespace platform::FileAttributes
