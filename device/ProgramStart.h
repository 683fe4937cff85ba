// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Error.h"

/// What a program makes sure of first, so that a start that cannot succeed is one sentence and not an abort,
/// and nothing is done by halves. Main thread, before there is another one.
namespace device {

/// Standard input, output and error that are closed are opened, so that no file and no socket gets their
/// numbers and is taken for them: input is at its end, and what is written to output is an error.
void holdStandardDescriptors();

/// Whether so many files more can be open at the same time.
platform::Result<void> checkDescriptors(int count);
/// Whether so many bytes more of address space can be had.
platform::Result<void> checkMemory(std::size_t bytes);

/// From now on memory that cannot be had ends the process with the status, after one line on standard error
/// behind the program's name, whichever thread asks for it. The name must live as long.
void endWhenMemoryIsOut(const char* programName, int status);
/// From now on it is an exception again, which costs only what asked for it.
void goOnWhenMemoryIsOut();

}  // namespace device
