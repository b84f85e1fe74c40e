#pragma once

#include <optional>
#include <string_view>

/// Settings that a process inherits from its parent.
namespace platform::Process {

/// Returns the value of the environment variable, which is valid until the environment changes, or nothing if
/// it is not set.
std::optional<std::string_view> environment(const char* variable);

/// Clears the bits of the file-creation mask that would deny the program access to the files and folders that
/// it creates.
void keepOwnFilesUsable();

}  // namespace platform::Process
