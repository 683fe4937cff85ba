// SPDX-License-Identifier: MIT
#include "device/ProgramStart.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstring>
#include <new>
#include <string>
#include <vector>

#include "device/Descriptor.h"
#include "device/HostFile.h"

namespace device {

using platform::Result;

namespace {

const char* endingProgram = "";
int endingStatus = 0;

/// Without any memory of its own.
void endNow() {
    static std::atomic_flag isEnding;
    // The first one ends the process; the others must not go on meanwhile.
    while (isEnding.test_and_set()) pause();
    for (const char* text : {endingProgram, ": There is too little memory.\n"}) {
        // Whoever does not read it is not told.
        [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, text, std::strlen(text));
    }
    _exit(endingStatus);
}

}  // namespace

void holdStandardDescriptors() {
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(descriptor, F_GETFD) >= 0 || errno != EBADF) continue;
        // The lowest free number is this one.
        if (open("/dev/null", descriptor == STDERR_FILENO ? O_WRONLY : O_RDONLY) != descriptor) return;
    }
}

Result<void> checkDescriptors(int count) {
    std::vector<Descriptor> open;
    open.reserve(static_cast<std::size_t>(count));
    while (static_cast<int>(open.size()) < count) {
        open.emplace_back(fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 0));
        if (open.back()) continue;
        return platform::failure("Too few files can be open at the same time: " + std::to_string(count) +
                                 " are needed beside those that are, and after " +
                                 std::to_string(open.size() - 1) + " of them: " + host::message(errno) + ".");
    }
    return {};
}

Result<void> checkMemory(std::size_t bytes) {
    void* const memory =
        mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (memory == MAP_FAILED) return platform::failure("There is too little memory.");
    munmap(memory, bytes);
    return {};
}

void endWhenMemoryIsOut(const char* programName, int status) {
    endingProgram = programName;
    endingStatus = status;
    std::set_new_handler(endNow);
}

void goOnWhenMemoryIsOut() {
    std::set_new_handler(nullptr);
}

}  // namespace device
