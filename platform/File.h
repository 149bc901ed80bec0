// SPDX-License-Identifier: MIT
// Files, as the rest of the program needs them. Paths are wide
// text (see Text.h); no function throws unless it says so.
#pragma once

#include <cstddef>
#include <cstdint>

namespace platform {

// A file open for reading. A plain value: copying it does not duplicate the
// open file, and going out of scope does not close it. A file that is left
// open on purpose can then be neither moved nor removed by this process.
struct InputFile {
    std::intptr_t native = -1; // descriptor or stream, by system
    bool ended = false;        // the end or a read error was met; nothing more is read
    std::int64_t left = -1;    // bytes to read by the size that was found at opening; below 0 when not known
    bool isTimed = false;      // how long the next read takes is to be noted

    explicit operator bool() const { return native != -1; }
};

// Opens an existing file for binary reading. Fails (a false handle) for a missing or unreadable file, a
// directory, a socket, a pipe that was opened before in this run, and for any pipe or device while they are
// forbidden. A pipe or device may let its reader wait: standard output is passed on first. Throws
// std::bad_alloc.
InputFile OpenForReading(const wchar_t* path);

// Reads up to `capacity` bytes and returns how many: fewer than `capacity` only at the end of the file or
// after a read error, which are not told apart. After either, 0.
std::size_t ReadFully(InputFile& file, unsigned char* buffer, std::size_t capacity);

// Size in bytes of an open regular file; 0 for anything else or when it cannot be told. Reading starts at the
// beginning of the file afterwards.
std::int64_t SizeOf(InputFile& file);

// Whether the open file is a regular one.
bool IsRegular(const InputFile& file);

// Closes the file and makes the handle false.
void Close(InputFile& file);

// Whether OpenForReading accepts pipes and devices. True at start. A walk forbids them, so that a file
// replaced by a pipe under its feet cannot stop the run.
void AllowSpecialFiles(bool allow);

enum class MoveResult {
    moved,     // also: the file bore the name already
    nameTaken, // by another file or by a directory
    // By what is no sign that a second file of this content is there: a link, wherever it leads, or an
    // empty file that may stand there for another run.
    nameBlocked,
    // The file may not go: it is a link, a directory or special, this process has it open, or somebody
    // else moves or changes it.
    stays,
    failed, // for any other reason
};

// Moves a regular file, also to another file system (as a copy that is complete or absent). Never replaces
// anything. Unless it is moved, everything is as it was.
MoveResult MoveWithoutReplacing(const wchar_t* from, const wchar_t* to);

// Removes a file whose move failed because `other` has the name, if that is so still: no run of
// this program removes `other` for this file's sake at the same time. If the name has become free,
// the file may be moved instead. True when it was removed.
bool RemoveInFavourOf(const wchar_t* path, const wchar_t* other);

// Removes a file that MoveWithoutReplacing would not refuse as one that stays. True on success.
bool RemoveFile(const wchar_t* path);

// Appends text to a file, creating it, with the system's line ends and
// encoding. False when it cannot be opened or written. Allocates nothing.
bool AppendText(const wchar_t* path, const wchar_t* text);

} // namespace platform
