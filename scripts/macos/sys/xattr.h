#pragma once

// Stands in for the header of the same name in macOS, which the cross compiler does not have. It declares the
// calls that `platform/macos/` makes, as the manual pages of macOS do.

#include <stdint.h>
#include <sys/types.h>

#ifdef __cplusplus
extern "C" {
#endif

ssize_t flistxattr(int descriptor, char* names, size_t size, int options);
ssize_t fgetxattr(int descriptor, const char* name, void* value, size_t size, uint32_t position, int options);
int fsetxattr(int descriptor, const char* name, const void* value, size_t size, uint32_t position,
              int options);
int fremovexattr(int descriptor, const char* name, int options);

#ifdef __cplusplus
}
#endif
