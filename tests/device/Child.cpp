// SPDX-License-Identifier: MIT
#include "tests/device/Child.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <stdexcept>
#include <utility>

namespace testing_support {

namespace {

std::pair<device::Descriptor, device::Descriptor> makePipe() {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
    return {device::Descriptor(ends[0]), device::Descriptor(ends[1])};
}

}  // namespace

Child::Child(const std::vector<std::string>& arguments) {
    auto [inputEnd, input] = makePipe();
    auto [output, outputEnd] = makePipe();
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_adddup2(&files, inputEnd.get(), STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&files, outputEnd.get(), STDOUT_FILENO);
    std::vector<std::string> texts{DEVICE_PEER};
    texts.insert(texts.end(), arguments.begin(), arguments.end());
    std::vector<char*> pointers;
    for (std::string& text : texts) pointers.push_back(text.data());
    pointers.push_back(nullptr);
    const int error = posix_spawn(&pid_, DEVICE_PEER, &files, nullptr, pointers.data(), environ);
    posix_spawn_file_actions_destroy(&files);
    if (error != 0) throw std::runtime_error("the peer program could not be started");
    input_ = std::move(input);
    output_ = std::move(output);
}

Child::~Child() {
    if (pid_ == 0) return;
    signal(SIGKILL);
    wait();
}

std::optional<std::string> Child::readLine() {
    constexpr int patienceMilliseconds = 60'000;
    for (;;) {
        if (const std::size_t end = buffer_.find('\n'); end != std::string::npos) {
            std::string line = buffer_.substr(0, end);
            buffer_.erase(0, end + 1);
            return line;
        }
        pollfd readable{output_.get(), POLLIN, 0};
        if (poll(&readable, 1, patienceMilliseconds) <= 0) return std::nullopt;
        std::array<char, 4096> bytes{};
        const ssize_t got = read(output_.get(), bytes.data(), bytes.size());
        if (got <= 0) return std::nullopt;
        buffer_.append(bytes.data(), static_cast<std::size_t>(got));
    }
}

std::vector<std::string> Child::readLines() {
    std::vector<std::string> lines;
    while (auto line = readLine()) lines.push_back(*line);
    return lines;
}

void Child::writeLine() {
    if (write(input_.get(), "\n", 1) != 1) throw std::runtime_error("the peer program does not listen");
}

void Child::closeInput() {
    const device::Descriptor closed = std::move(input_);
}

void Child::signal(int number) {
    if (pid_ > 0) kill(pid_, number);
}

int Child::wait() {
    int status = 0;
    if (waitpid(std::exchange(pid_, 0), &status, 0) < 0) return -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

}  // namespace testing_support
