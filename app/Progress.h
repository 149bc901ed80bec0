// SPDX-License-Identifier: MIT
// How far a long run has come, on the line of platform/Status.h: file, function, bytes, speed and time left.
#pragma once

#include "app/RunContext.h"

#include <cstddef>

// Begins to watch, where a user can see it.
void StartProgress(const RunContext& context);

// What is read from now on. The path stays valid until the next call.
void NoteFile(const wchar_t* path);
void NoteRow(std::size_t row);

// Takes the line away at the end of the run.
void EndProgress();
