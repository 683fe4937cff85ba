// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "device/Descriptor.h"
#include "platform/foundation/Error.h"

namespace device {

/// The directory of a root in which each process has its notification socket, NAME.socket, and beside it,
/// where that was full, a folder NAME.spill with a symbolic link for each name that waits. It is the open
/// directory: one that takes its place is another folder. Usable from any thread.
class NotificationFolder {
  public:
    /// The longest name that is carried, in bytes.
    static constexpr std::size_t maximumNameLength = 1024;

    /// The directory of the path is made where it is missing, and private in any case. A host path of any
    /// length.
    static platform::Result<std::shared_ptr<const NotificationFolder>> open(const std::string& path);

    /// Whether the path still leads to it.
    bool isInPlace() const;

    /// A process's place: what is sent to it arrives at its socket.
    struct Seat {
        std::shared_ptr<const NotificationFolder> folder;
        Descriptor socket;
        /// Its name in the folder, without ".socket".
        std::string entry;
    };
    static platform::Result<std::shared_ptr<const Seat>> takeSeat(
        const std::shared_ptr<const NotificationFolder>& folder);
    bool has(const Seat& seat) const;
    /// Takes it away with what did not arrive.
    void remove(const Seat& seat) const { removeEntry(seat.entry); }
    /// Adds the names that have arrived since the last time.
    void takeNames(const Seat& seat, std::vector<std::string>& names) const;

    /// Sends the name to every process there but that of the seat `leftOut`, which may be null, and takes the
    /// places of those away that have gone.
    void post(const std::string& name, const std::shared_ptr<const Seat>& leftOut) const;
    /// Removes what processes left that were killed between two steps: sockets never renamed, folders without
    /// a socket.
    void removeAbandoned() const;

  private:
    NotificationFolder(std::string path, Descriptor directory)
        : path_(std::move(path)), directory_(std::move(directory)) {}

    std::vector<std::string> namesIn(const char* directory) const;
    int send(const std::string& entry, const std::string& name) const;
    void postTo(const std::string& entry, const std::string& name) const;
    bool spill(const std::string& entry, const std::string& name) const;
    void removeEntry(const std::string& entry) const;

    std::string path_;
    Descriptor directory_;
};

}  // namespace device
