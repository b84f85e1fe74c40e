#pragma once

/// What a process inherits and may have to put right.
namespace platform::Process {

/// Takes out of the file-creation mask what would keep the program itself from the files and folders that it
/// makes.
void keepOwnFilesUsable();

}  // namespace platform::Process
