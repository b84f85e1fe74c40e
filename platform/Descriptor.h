#pragma once

#include <unistd.h>

#include <cerrno>
#include <utility>

namespace platform {

/// Owns a file descriptor and closes it when destroyed; -1 if it has none.
class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int descriptor) : descriptor_(descriptor) {}
  Descriptor(Descriptor&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    return *this;
  }
  ~Descriptor() {
    if (descriptor_ != -1) ::close(descriptor_);
  }

  int get() const { return descriptor_; }
  explicit operator bool() const { return descriptor_ != -1; }
  /// Returns the descriptor, which the caller must close from now on.
  int release() { return std::exchange(descriptor_, -1); }

 private:
  int descriptor_ = -1;
};

/// Repeats the system call as long as signals interrupt it. Returns the result of the last call.
template <class Call>
auto retrying(Call call) {
  auto result = call();
  while (result == -1 && errno == EINTR) result = call();
  return result;
}

}  // namespace platform
