// SPDX-License-Identifier: MIT
#include "device/networks/NetworkManagerNetworks.h"

#include <signal.h>

#include <exception>
#include <future>
#include <system_error>
#include <thread>
#include <utility>

#include "platform/foundation/LogSink.h"

namespace device {

namespace {

using Answer = platform::Result<SavedNetworks>;

/// What the question answers, or why it could not. An exception ends here, in the thread it was thrown in:
/// its text may be shared between threads in ways that no tool of ours can check.
Answer answered(const NetworkManagerNetworks::Question& question,
                NetworkManagerNetworks::Clock::time_point deadline) {
    try {
        return question(deadline);
    } catch (const std::exception& error) {
        return platform::failure(error.what());
    }
}

/// The answer, or the reason why there is none in time.
Answer ask(const NetworkManagerNetworks::Question& question, std::chrono::milliseconds patience) {
    const auto deadline = NetworkManagerNetworks::Clock::now() + patience;
    std::packaged_task<Answer()> task([question, deadline] { return answered(question, deadline); });
    std::future<Answer> answer = task.get_future();
    try {
        std::thread([task = std::move(task)]() mutable {
            sigset_t all;
            sigfillset(&all);
            pthread_sigmask(SIG_SETMASK, &all, nullptr);
            task();
        }).detach();
    } catch (const std::system_error& error) {
        return platform::failure(error.what());
    }
    if (answer.wait_until(deadline) != std::future_status::ready)
        return platform::failure("It did not answer in time.");
    return answer.get();
}

}  // namespace

NetworkManagerNetworks::NetworkManagerNetworks() : NetworkManagerNetworks(askSavedConnections, patience) {}

NetworkManagerNetworks::NetworkManagerNetworks(Question question, std::chrono::milliseconds limit)
    : question_(std::move(question)), patience_(limit) {}

std::vector<std::string> NetworkManagerNetworks::knownSSIDs() {
    Answer answer = ask(question_, patience_);
    if (!answer) {
        platform::log("The network manager's Wi-Fi networks could not be had: " +
                      answer.error().localizedDescription);
        return {};
    }
    for (const std::string& fault : answer->faults) platform::log(fault);
    return std::move(answer->names);
}

}  // namespace device
