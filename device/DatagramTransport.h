// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "device/Descriptor.h"
#include "platform/foundation/NotificationTransport.h"

namespace device {

/// Carries system-wide notifications between all processes that share a root, without a daemon. Each process
/// has a datagram socket in "/private/var/run/notifications" of the root; posting sends the name to every
/// socket there.
///
/// The kernel queues only a few datagrams for a socket. What a full socket refuses becomes an entry in a
/// folder beside it (NAME.socket, NAME.spill): a symbolic link whose target is the name. Making a link is
/// atomic and two equal names are one link, so posters and the receiver need no lock, and none of them ever
/// waits for another, not even for one that was stopped or killed in the middle. The receiver looks into the
/// folder after it has emptied its socket; the poster tries a second wake-up after it has made the link.
/// Either that one gets through, or the socket is still full and the receiver has yet to empty it: in both
/// cases it will look.
class DatagramTransport : public platform::NotificationTransport {
  public:
    /// The longest name that is carried, in bytes.
    static constexpr std::size_t maximumNameLength = 1024;

    /// `rootDirectory` is a host path of any length.
    explicit DatagramTransport(const std::string& rootDirectory);
    /// Ends the receiving thread, then removes the socket and what it did not get to.
    ~DatagramTransport() override;

    platform::Result<void> start(Receiver receiver) override;
    /// An empty name, one that is too long or that holds a null character is not sent but logged. Works
    /// before start() too, for a process that only posts.
    void post(const std::string& name) override;
    bool hasPending() const override;

  private:
    platform::Result<void> openDirectory();
    platform::Result<void> bindSocket();
    void removeAbandoned() const;
    std::vector<std::string> directoryNames(int directory, const char* path) const;
    int send(const std::string& entry, const std::string& name) const;
    void postTo(const std::string& entry, const std::string& name) const;
    bool spill(const std::string& entry, const std::string& name) const;
    void removeEntry(const std::string& entry) const;
    void receive();
    void takeDatagrams(std::vector<std::string>& names) const;
    void takeSpilled(std::vector<std::string>& names) const;

    std::string directoryPath_;
    /// Guards the opening of the directory, by whoever posts first.
    std::mutex openingMutex_;
    Descriptor directory_;
    Descriptor socket_;
    Descriptor stop_;
    /// This process's socket in the directory, without ".socket"; empty before start().
    std::string entry_;
    Receiver receiver_;
    /// Set before the thread takes anything out, cleared after the receiver was called for all of it.
    std::atomic<bool> busy_ = false;
    std::thread thread_;
};

}  // namespace device
