// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "device/Descriptor.h"
#include "device/NotificationFolder.h"
#include "platform/foundation/NotificationTransport.h"

namespace device {

/// Carries system-wide notifications between all processes that share a root, without a daemon. Each process
/// has a datagram socket in "/private/var/run/notifications" of the root; posting sends the name to every
/// socket there.
///
/// The kernel queues only a few datagrams for a socket. What a full socket refuses becomes an entry in a
/// folder beside it: a symbolic link whose target is the name. Making a link is atomic and two equal names
/// are one link, so posters and the receiver need no lock, and none of them ever waits for another, not even
/// for one that was stopped or killed in the middle. The receiver looks into the folder after it has emptied
/// its socket; the poster tries a second wake-up after it has made the link. Either that one gets through, or
/// the socket is still full and the receiver has yet to empty it: in both cases it will look.
///
/// The directory may be taken away and made anew, alone or with the whole root. Each post, and while it
/// listens each second, looks whether it still is the one that its path names, and goes over to the new one,
/// which one log line tells. One that is missing is made as long as there is a root.
class DatagramTransport : public platform::NotificationTransport {
  public:
    static constexpr std::size_t maximumNameLength = NotificationFolder::maximumNameLength;

    /// Whether what this process posts comes back to it.
    enum class OwnPosts { ComeBack, StayAway };

    /// `rootDirectory` is a host path of any length.
    explicit DatagramTransport(const std::string& rootDirectory, OwnPosts ownPosts = OwnPosts::ComeBack);
    /// Ends the receiving thread, then removes the socket and what it did not get to.
    ~DatagramTransport() override;

    platform::Result<void> start(Receiver receiver) override;
    /// An empty name, one that is too long or that holds a null character is not sent but logged. Works
    /// before start() too, for a process that only posts.
    void post(const std::string& name) override;
    bool hasPending() const override;

  private:
    using Folder = std::shared_ptr<const NotificationFolder>;
    using Seat = std::shared_ptr<const NotificationFolder::Seat>;

    platform::Result<Folder> presentFolder();
    platform::Result<Folder> openFolder();
    Seat seat() const;
    void wake() const;
    void receive();
    void lookAfterFolder();
    void deliver();

    std::string rootDirectory_;
    std::string directoryPath_;
    OwnPosts ownPosts_;
    /// Guards the folder and the seats.
    mutable std::mutex mutex_;
    /// Empty until somebody posts or listens.
    Folder folder_;
    /// This process's; empty before start().
    Seat seat_;
    /// Seats in folders that are no longer the one, until the thread has taken what is left there.
    std::vector<Seat> left_;
    /// What was said last of a folder that cannot be used. The thread's alone.
    std::string complaint_;
    Descriptor wakeUp_;
    std::atomic<bool> stopping_ = false;
    Receiver receiver_;
    /// Set before the thread takes anything out, cleared after the receiver was called for all of it.
    std::atomic<bool> busy_ = false;
    std::thread thread_;
};

}  // namespace device
