// SPDX-License-Identifier: MIT
#include "device/DatagramTransport.h"

#include <poll.h>
#include <pthread.h>
#include <signal.h>
#include <sys/eventfd.h>
#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <system_error>
#include <unordered_set>
#include <utility>

#include "device/HostFile.h"
#include "device/PhonePaths.h"
#include "platform/foundation/LogSink.h"

namespace device {

using platform::failure;
using platform::Result;

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

/// Half of the second within which a new folder is to be noticed.
constexpr milliseconds lookEvery{500};

bool isDirectory(const std::string& path) {
    struct stat status{};
    return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

}  // namespace

DatagramTransport::DatagramTransport(const std::string& rootDirectory, OwnPosts ownPosts)
    : rootDirectory_(rootDirectory),
      directoryPath_(rootDirectory + std::string(phonePaths::notifications)),
      ownPosts_(ownPosts) {}

DatagramTransport::~DatagramTransport() {
    if (!thread_.joinable()) return;
    stopping_ = true;
    wake();
    thread_.join();
    seat_->folder->remove(*seat_);
}

void DatagramTransport::wake() const {
    // Cannot fail: the counter is far from full.
    eventfd_write(wakeUp_.get(), 1);
}

/// The folder that the path names now, with this process's seat in it if it listens.
Result<DatagramTransport::Folder> DatagramTransport::presentFolder() {
    Result<Folder> folder;
    std::string news;
    {
        const std::lock_guard lock(mutex_);
        const bool isInPlace = folder_ && folder_->isInPlace();
        if (isInPlace && (!seat_ || folder_->has(*seat_))) return folder_;
        if (folder_) {
            news = isInPlace ? "This process's notification socket was gone from \"" + directoryPath_ +
                                   "\" and has been made anew."
                             : "The notifications directory \"" + directoryPath_ +
                                   "\" was made anew and is the one that is used now.";
        }
        folder = openFolder();
    }
    if (folder && !news.empty()) platform::log(news);
    return folder;
}

/// Called with the lock held.
Result<DatagramTransport::Folder> DatagramTransport::openFolder() {
    // A root that was taken away is nobody's to bring back: whoever fills a new one expects it empty.
    if (folder_ && !isDirectory(rootDirectory_)) {
        return failure("The notifications directory \"" + directoryPath_ +
                       "\" could not be opened: " + host::message(ENOENT) + ".");
    }
    Result<Folder> folder = NotificationFolder::open(directoryPath_);
    if (!folder) return folder;
    if (seat_) {
        Result<Seat> seat = NotificationFolder::takeSeat(*folder);
        if (!seat) return std::unexpected(seat.error());
        left_.push_back(std::exchange(seat_, *std::move(seat)));
        wake();
    }
    folder_ = *folder;
    return folder;
}

Result<void> DatagramTransport::start(Receiver receiver) {
    if (thread_.joinable()) return failure("The notification transport was started already.");
    const auto noThread = [](const std::string& reason) {
        return failure("No notification thread could be made: " + reason + ".");
    };
    const Result<Folder> folder = presentFolder();
    if (!folder) return std::unexpected(folder.error());
    (*folder)->removeAbandoned();
    wakeUp_ = Descriptor(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
    if (!wakeUp_) return noThread(host::message(errno));
    Result<Seat> seat = NotificationFolder::takeSeat(*folder);
    if (!seat) return std::unexpected(seat.error());
    {
        const std::lock_guard lock(mutex_);
        seat_ = *std::move(seat);
    }
    receiver_ = std::move(receiver);
    // Signals are the main thread's.
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    std::string reason;
    try {
        thread_ = std::thread([this] { receive(); });
    } catch (const std::system_error& error) {
        reason = error.what();
    }
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    if (reason.empty()) return {};
    const std::lock_guard lock(mutex_);
    seat_->folder->remove(*seat_);
    seat_.reset();
    return noThread(reason);
}

DatagramTransport::Seat DatagramTransport::seat() const {
    const std::lock_guard lock(mutex_);
    return seat_;
}

void DatagramTransport::post(const std::string& name) {
    if (name.empty() || name.size() > maximumNameLength || name.find('\0') != std::string::npos) {
        platform::log("A notification was not posted: its name must have 1 to " +
                      std::to_string(maximumNameLength) + " bytes and no null character; it has " +
                      std::to_string(name.size()) + " bytes.");
        return;
    }
    const Result<Folder> folder = presentFolder();
    if (folder) return (*folder)->post(name, ownPosts_ == OwnPosts::StayAway ? seat() : nullptr);
    platform::log("The notification \"" + name + "\" was not posted: " + folder.error().localizedDescription);
}

bool DatagramTransport::hasPending() const {
    if (!thread_.joinable()) return false;
    {
        const std::lock_guard lock(mutex_);
        if (!left_.empty()) return true;
        // In this order: what is no longer in the socket was taken by the thread after it had become busy.
        pollfd readable{seat_->socket.get(), POLLIN, 0};
        if (poll(&readable, 1, 0) > 0) return true;
    }
    return busy_;
}

void DatagramTransport::receive() {
    auto nextLook = steady_clock::now() + lookEvery;
    for (;;) {
        const Seat present = seat();
        std::array<pollfd, 2> descriptors{{{present->socket.get(), POLLIN, 0}, {wakeUp_.get(), POLLIN, 0}}};
        const auto left = std::chrono::ceil<milliseconds>(nextLook - steady_clock::now());
        const int timeout = static_cast<int>(std::max(left, milliseconds(0)).count());
        const int ready = poll(descriptors.data(), descriptors.size(), timeout);
        if (stopping_) return;
        if (ready > 0) {
            eventfd_t count = 0;
            eventfd_read(wakeUp_.get(), &count);
            deliver();
        }
        if (steady_clock::now() < nextLook) continue;
        lookAfterFolder();
        nextLook = steady_clock::now() + lookEvery;
    }
}

void DatagramTransport::lookAfterFolder() {
    const Result<Folder> folder = presentFolder();
    std::string complaint = folder ? std::string() : folder.error().localizedDescription;
    if (complaint == complaint_) return;
    complaint_ = std::move(complaint);
    // Of a root that is gone nothing is said: there is nobody who could be heard.
    if (!folder && isDirectory(rootDirectory_)) platform::log(complaint_);
}

void DatagramTransport::deliver() {
    busy_ = true;
    std::vector<Seat> left;
    Seat present;
    {
        const std::lock_guard lock(mutex_);
        left = std::exchange(left_, {});
        present = seat_;
    }
    std::vector<std::string> names;
    for (const Seat& each : left) {
        each->folder->takeNames(*each, names);
        each->folder->remove(*each);
    }
    present->folder->takeNames(*present, names);
    std::unordered_set<std::string_view> delivered;
    for (const std::string& name : names) {
        if (delivered.insert(name).second) receiver_(name);
    }
    busy_ = false;
}

}  // namespace device
