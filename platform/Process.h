#pragma once

#include <optional>
#include <string_view>

/// What a process inherits and may have to put right.
namespace platform::Process {

/// Returns the value of the environment variable, which is valid until the environment changes, or nothing if
/// it is not set.
std::optional<std::string_view> environment(const char* variable);

/// Takes out of the file-creation mask what would keep the program itself from the files and folders that it
/// makes.
void keepOwnFilesUsable();

}  // namespace platform::Process
