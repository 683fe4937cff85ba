// SPDX-License-Identifier: MIT
#pragma once

#include <sys/types.h>

#include <string_view>

#include "device/HostFile.h"

namespace device {

/// A lock on a file's name that processes and threads of one user have in turn, and that nobody else can hold
/// up: it is a file of that name in the folder ".locks" beside it, which only its owner can enter. It goes
/// with its process; the lock file stays behind.
///
/// The file itself is never locked, since who can open a file can lock it. A lock file that was opened to
/// others meanwhile, and that one of them holds, is put out of use: none of ours is ever shared, so a shared
/// one is a stranger's.
class PrivateLock {
  public:
    static constexpr std::string_view folderName = ".locks";

    /// Waits so many seconds of real time at most; those who wait get it one after the other. The error names
    /// the lock file, and the process that holds it where that can be known.
    static host::Explained<PrivateLock> take(const host::Location& file, double seconds);

    /// While a reader holds its share, who holds the lock waits before it touches the bytes, and while it is
    /// at them, readers wait. Each of them for so many seconds at most: then it goes on all the same. Nothing
    /// is held, and nobody waits, where nobody has ever locked the name. Closing it gives it back.
    static Descriptor shareOfReader(const host::Location& file, double seconds);
    void keepReadersOut(double seconds);
    void letReadersIn();

  private:
    explicit PrivateLock(Descriptor file) : file_(std::move(file)) {}

    /// Closing it gives the lock back.
    Descriptor file_;
};

}  // namespace device
