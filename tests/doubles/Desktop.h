// SPDX-License-Identifier: MIT
#pragma once

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>

#include "device/Descriptor.h"
#include "tests/doubles/TemporaryDirectory.h"

namespace testing_support {

/// An environment variable for as long as this lives; null for none.
class Variable {
  public:
    Variable(const char* name, const char* value) : name_(name) {
        if (const char* old = std::getenv(name)) old_ = old;
        set(value);
    }
    ~Variable() { set(old_ ? old_->c_str() : nullptr); }
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;

  private:
    void set(const char* value) {
        if (value) {
            setenv(name_, value, 1);
        } else {
            unsetenv(name_);
        }
    }
    const char* name_;
    std::optional<std::string> old_;
};

/// A desktop for as long as this lives: a display, and a search path that has `xdg-open` alone.
class Desktop {
  public:
    /// Tells with how many arguments it was called, and with which.
    static constexpr const char* opensEverything = "echo \"$#:$1\" > \"$0.said\"\n";
    static constexpr const char* findsNoProgram = "exit 3\n";

    /// `script` is what xdg-open does.
    explicit Desktop(const std::string& script) {
        writeText(program_, "#!/bin/sh\n" + script);
        std::filesystem::permissions(program_, std::filesystem::perms::owner_all);
        mkfifo((program_ + ".said").c_str(), 0600);
        said_ = device::Descriptor(open((program_ + ".said").c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC));
    }
    /// What opensEverything has told, without the end of the line; waits for it, and is empty when nothing
    /// comes.
    std::string said() const {
        pollfd readable{said_.get(), POLLIN, 0};
        std::array<char, 1000> bytes{};
        if (poll(&readable, 1, 60'000) != 1) return {};
        const ssize_t got = read(said_.get(), bytes.data(), bytes.size());
        return got > 0 ? std::string(bytes.data(), static_cast<std::size_t>(got) - 1) : std::string();
    }

  private:
    TemporaryDirectory directory_;
    std::string program_ = directory_ / "xdg-open";
    device::Descriptor said_;
    Variable display_{"DISPLAY", ":77"};
    Variable path_{"PATH", directory_.path().c_str()};
};

}  // namespace testing_support
